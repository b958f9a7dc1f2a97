"""Is the lattice of a crystal what its lines tell, and how good is it as a solution?

A problem has an answer only if the lines hold it. Here stand the three reasons for which a crystal
is left out: a metric as good as that of a more symmetric lattice, lines that a smaller cell
explains as well, lines that leave part of the cell open.
"""
import itertools
import math

import gemmi
import numpy as np

from randomcrystals import WAVELENGTH

CELL_NAMES = ('a', 'b', 'c', 'alpha', 'beta', 'gamma')
EDGE_TOLERANCE, ANGLE_TOLERANCE = .005, .5  # a solution counts as the same lattice within these
LINES_OUTSIDE = 2
LARGEST_ERROR = .004

HOLOHEDRY_ORDERS = {'triclinic': 2, 'monoclinic': 4, 'orthorhombic': 8, 'tetragonal': 16,
                    'hexagonal': 24, 'rhombohedral': 12, 'cubic': 48}
# 1/d^2 = A hh + B kk + C ll + D kl + E hl + F hk: what the free constants of a system multiply.
METRIC_CONSTANTS = {
    'triclinic': np.eye(6),
    'monoclinic': np.eye(6)[[0, 1, 2, 4]],
    'orthorhombic': np.eye(6)[:3],
    'tetragonal': np.array([[1, 1, 0, 0, 0, 0], [0, 0, 1, 0, 0, 0]]),
    'hexagonal': np.array([[1, 1, 0, 0, 0, 1], [0, 0, 1, 0, 0, 0]]),
    'cubic': np.array([[1, 1, 1, 0, 0, 0]]),
}


def q_of(angle):
    return (2 * np.sin(np.radians(angle) / 2) / WAVELENGTH) ** 2


def angle_of(q):
    return np.degrees(2 * np.arcsin(np.minimum(1, WAVELENGTH * np.sqrt(q) / 2)))


def unimodular_matrices():
    rows = np.array(list(itertools.product((-1, 0, 1), repeat=3)))
    matrices = rows[np.indices((27, 27, 27)).reshape(3, -1).T]
    return matrices[np.abs(np.linalg.det(matrices).round()) == 1]


UNIMODULAR = unimodular_matrices()


def reduced_cell(cell, centring):
    vector = gemmi.GruberVector(cell, centring)
    vector.niggli_reduce()
    return gemmi.UnitCell(*vector.cell_parameters())


def edges_and_cosines(metrics):
    edges = np.sqrt(np.einsum('nii->ni', metrics))
    pairs = ((1, 2), (0, 2), (0, 1))
    return edges, np.stack([metrics[:, i, j] / edges[:, i] / edges[:, j] for i, j in pairs], axis=1)


def lattice_symmetry(reduced):
    """Changes of basis that leave the cell as it is, within twice the tolerances: a more
    symmetric lattice halfway between both is then within the tolerances themselves."""
    basis = np.array(reduced.orthogonalization_matrix.tolist())
    metrics = UNIMODULAR @ (basis.T @ basis) @ UNIMODULAR.transpose(0, 2, 1)
    edges, cosines = edges_and_cosines(metrics)
    angles = np.degrees(np.arccos(np.clip(cosines, -1, 1)))
    parameters = np.array(reduced.parameters)
    alike = np.abs(edges / parameters[:3] - 1) <= 2 * EDGE_TOLERANCE
    alike &= np.abs(angles - parameters[3:]) <= 2 * ANGLE_TOLERANCE
    return UNIMODULAR[alike.all(axis=1)]


def lattice_system(crystal):
    if crystal.system == 'trigonal':
        return 'rhombohedral' if crystal.centring == 'R' else 'hexagonal'
    return crystal.system


def has_its_own_metric(crystal, symmetry):
    return len(symmetry) == HOLOHEDRY_ORDERS[lattice_system(crystal)]


def lattice_lines(reduced, largest_q):
    """All indices of the half sphere, and their 1/d^2."""
    # A plane with index h of an edge a is nowhere wider than a/h.
    limits = [int(edge * math.sqrt(largest_q)) for edge in reduced.parameters[:3]]
    ranges = [np.arange(-limit, limit + 1) for limit in limits]
    hkl = np.stack(np.meshgrid(*ranges, indexing='ij'), axis=-1).reshape(-1, 3)
    hkl = hkl[len(hkl) // 2 + 1:]  # the origin stands in the middle, mates on either side
    q = reduced.calculate_1_d2_array(hkl)
    return hkl[q <= largest_q], q[q <= largest_q]


def sublattice_vectors(index):
    """One v for each sublattice of this prime index: it holds the hkl with v.hkl = 0 mod index."""
    vectors = np.array(list(itertools.product(range(index), repeat=3)))[1:]
    firsts = vectors[np.arange(len(vectors)), (vectors != 0).argmax(axis=1)]
    return vectors[firsts == 1]


def belongs(hkl, vectors, index):
    return hkl @ vectors.T % index == 0


def distances_to_nearest(angles, places):
    if not len(places):
        return np.full(len(angles), np.inf)
    places = np.sort(places)
    after = np.searchsorted(places, angles)
    below, above = places[np.maximum(after - 1, 0)], places[np.minimum(after, len(places) - 1)]
    return np.minimum(np.abs(angles - below), np.abs(angles - above))


def has_all_lines(possible, q):
    """Nine tenths will do: some cells of a fifth the size have all lines of cubic P but 100,
    200 and 400."""
    return np.mean(distances_to_nearest(possible, q) < 1e-5 * possible) > .9


def sublattice_members(vector, index, symmetry, hkl, q, possible):
    """Which of hkl a smaller cell has to explain the lines with.

    Its images under the symmetry of the lattice have lines at the same places, and together they
    may have all that the space group allows, whatever the atoms (as tetragonal a/sqrt 2 and a for
    cubic a). This ambiguity is no fault of the list and stays: the more symmetric lattice is the
    answer. What still must not be is that all lines are common to the images, for then the
    symmetric cell itself can be smaller.
    """
    inside = belongs(hkl, vector[None], index)[:, 0]
    if not has_all_lines(possible, q[inside]):
        return inside
    images = np.unique(vector @ symmetry % index, axis=0)
    return belongs(hkl, images, index).all(axis=1)


def needs_the_whole_lattice(reduced, symmetry, lines, possible, resolution):
    """Every smaller cell of index 2, 3 or 5 misses some of the lines. Index 4 is twice 2.

    lines are angles, possible the angles of all reflections of the space group so far."""
    hkl, q = lattice_lines(reduced, q_of(lines[-1] + 1))
    places = angle_of(q)
    possible = q_of(possible)
    for index in (2, 3, 5):
        for vector in sublattice_vectors(index):
            inside = sublattice_members(vector, index, symmetry, hkl, q, possible)
            missed = distances_to_nearest(lines, places[inside]) > resolution
            if np.count_nonzero(missed) < LINES_OUTSIDE:
                return False
    return True


def determines_the_cell(crystal, angles, hkl, sigma):
    """Least squares on the lines leaves no constant of the cell open: a few lines outside a zone
    need not be enough for the angles that lead out of it."""
    h, k, l = hkl.T
    products = np.stack((h * h, k * k, l * l, k * l, h * l, h * k), axis=1)
    system = 'hexagonal' if crystal.system == 'trigonal' else crystal.system
    constants = METRIC_CONSTANTS[system]
    errors = (q_of(angles + sigma) - q_of(angles - sigma)) / 2
    design = products @ constants.T / errors[:, None]
    if np.linalg.matrix_rank(design) < len(constants):
        return False
    covariance = constants.T @ np.linalg.inv(design.T @ design) @ constants
    a, b, c = (edge ** 2 for edge in crystal.cell.reciprocal().parameters[:3])
    scales = np.array((a, b, c, 2 * math.sqrt(b * c), 2 * math.sqrt(a * c), 2 * math.sqrt(a * b)))
    return bool(np.all(np.sqrt(np.diag(covariance)) / scales < LARGEST_ERROR))


def figure_of_merit(reduced, angles):
    """De Wolff's M of the lattice on the first 20 lines, and its number of possible lines."""
    observed = q_of(angles[:20])
    _, q = lattice_lines(reduced, observed[-1] * 1.02)
    places = np.sort(q)
    distinct = places[np.diff(places, prepend=-1) > 1e-6 * places]
    possible = np.count_nonzero(distinct <= observed[-1])
    error = distances_to_nearest(observed, distinct).mean()
    return observed[-1] / (2 * error * max(possible, 1)), possible
