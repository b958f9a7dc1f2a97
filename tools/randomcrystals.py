"""Crystals at random: a space group, a cell, atoms, and the reflections they give.

Nothing here is bonded as chemistry would have it. What counts is that the intensities spread as
those of real crystals do: light and heavy atoms, general and special positions, and now and then
one heavy atom on a special position that hides the cell behind a smaller one.
"""
import math
from dataclasses import dataclass

import gemmi
import numpy as np

WAVELENGTH = 1.54056
LAST_ANGLE = 100.0
CLOSEST_ATOMS = 1.2
SHORTEST_EDGE, LONGEST_EDGE = 2.6, 60.0
# Molecules of low symmetry fill large cells with many sites: without them no triclinic cell
# would come near the largest volume.
MOST_SITES = 60

# Space groups of each system with their weights, about as real crystals use them. Every centring
# of every system is there; monoclinic cells come with the shortest a and c, so C or I.
SPACE_GROUPS = {
    'triclinic': {'P -1': 5, 'P 1': 1},
    'monoclinic': {'P 1 21/c 1': 14, 'C 1 2/c 1': 4, 'I 1 2/a 1': 3, 'P 1 21 1': 3, 'C 1 2/m 1': 3,
                   'I 1 2/m 1': 2, 'P 1 21/m 1': 2, 'P 1 2/c 1': 1, 'C 1 c 1': 1, 'C 1 2 1': 1},
    'orthorhombic': {'P 21 21 21': 5, 'P n m a': 5, 'P b c a': 4, 'P n a 21': 2, 'P b c n': 2,
                     'P c a 21': 1, 'P m m n:2': 1, 'C m c m': 3, 'C m c e': 2, 'C m c 21': 1,
                     'C 2 2 21': 1, 'I m m a': 2, 'I b a m': 1, 'I m m m': 1, 'F d d d:2': 2,
                     'F d d 2': 2, 'F m m m': 1},
    'tetragonal': {'P 42/m n m': 3, 'P 41 21 2': 2, 'P 4/n m m:2': 2, 'P 4/m b m': 2,
                   'P -4 21 m': 1, 'P 4/m m m': 1, 'I 4/m m m': 4, 'I 41/a m d:2': 2,
                   'I 41/a:2': 2, 'I 4/m': 1, 'I 4/m c m': 1, 'I -4 2 d': 1, 'I -4': 1},
    'trigonal': {'R -3 m:H': 4, 'R -3 c:H': 3, 'R 3 m:H': 2, 'R -3:H': 2, 'R 3 c:H': 1,
                 'P -3 m 1': 3, 'P 31 2 1': 2, 'P -3': 1, 'P -3 1 c': 1, 'P 3 1 m': 1},
    'hexagonal': {'P 63/m m c': 5, 'P 63/m': 2, 'P 63 m c': 2, 'P 6/m m m': 2, 'P 61 2 2': 1,
                  'P -6 2 m': 1, 'P 63': 1},
    'cubic': {'P a -3': 2, 'P m -3 m': 2, 'P 21 3': 1, 'P -4 3 n': 1, 'P m -3 n': 1, 'I a -3': 2,
              'I -4 3 m': 1, 'I m -3': 1, 'I a -3 d': 1, 'F m -3 m': 4, 'F d -3 m:2': 3,
              'F -4 3 m': 2},
}
UNIAXIAL = ('tetragonal', 'trigonal', 'hexagonal')
LATTICE_POINTS = {'P': 1, 'C': 2, 'I': 2, 'F': 4, 'R': 3}  # in the conventional cell


@dataclass
class Kind:
    """What a crystal is made of: elements with weights, room an atom takes, B factors."""
    volume: tuple
    b_factor: tuple
    special: tuple  # share of the sites that are tried on special positions
    light: dict
    heavy: tuple = ()


KINDS = {
    'molecules': Kind((15, 22), (2, 5), (0, .2), {'C': 12, 'O': 3, 'N': 3, 'S': 1, 'Cl': 1}),
    'minerals': Kind((9, 16), (.4, 1.5), (.2, .7),
                     {'O': 8, 'Si': 3, 'Al': 1, 'Ca': 1, 'Fe': 1, 'P': 1, 'Na': 1, 'Ti': 1}),
    'alloys': Kind((11, 22), (.4, 1.2), (.4, .9),
                   {'Ni': 2, 'Al': 2, 'Cu': 2, 'Zn': 1, 'Ce': 1, 'Sn': 1, 'Sb': 1, 'Se': 2}),
    'heavy': Kind((10, 20), (.8, 3), (.1, .4), {'O': 6, 'C': 4, 'N': 2, 'F': 1, 'S': 1},
                  ('Ba', 'La', 'Pb', 'Bi', 'I', 'W', 'Cs', 'U', 'Br', 'Zr')),
}
KIND_WEIGHTS = {
    'triclinic': {'molecules': 5, 'minerals': 3, 'heavy': 2},
    'monoclinic': {'molecules': 5, 'minerals': 3, 'alloys': 1, 'heavy': 2},
    'orthorhombic': {'molecules': 3, 'minerals': 4, 'alloys': 2, 'heavy': 2},
}
SYMMETRIC_KIND_WEIGHTS = {'molecules': 1, 'minerals': 4, 'alloys': 3, 'heavy': 2}


@dataclass
class Crystal:
    system: str
    group: gemmi.SpaceGroup
    cell: gemmi.UnitCell
    sites: list  # (element, B factor, positions of all its atoms in the cell)

    @property
    def centring(self):
        return self.group.hm[0]

    @property
    def primitive_volume(self):
        return self.cell.volume / LATTICE_POINTS[self.centring]


def pick(weights, rng):
    names = list(weights)
    share = np.array([weights[name] for name in names], float)
    return names[rng.choice(len(names), p=share / share.sum())]


def random_shape(system, centring, rng):
    """Cell of any size: edges and angles in the proportions of the system."""
    edges = np.exp(rng.normal(0, .4, 3))
    if rng.random() < .3:  # flat or long
        odd_one = 2 if system in UNIAXIAL else rng.integers(3)
        edges[odd_one] *= np.exp(rng.choice((-1, 1)) * rng.uniform(.5, 1.8))
    angles = [90.0, 90.0, 90.0]
    if system == 'cubic':
        edges[:] = 1
    elif system in UNIAXIAL:
        edges[1] = edges[0]
        edges[2] *= 2 if centring == 'R' else 1  # hexagonal axes of rhombohedra are long in c
        if system != 'tetragonal':
            angles[2] = 120.0
    elif system == 'monoclinic':
        # Beyond this angle a and c would not be the shortest.
        widest = math.degrees(math.acos(-min(edges[0], edges[2]) / (2 * max(edges[0], edges[2]))))
        angles[1] = rng.uniform(90, min(widest, 125))
    elif system == 'triclinic':
        angles = list(rng.uniform(65, 115, 3))
    return edges, angles


def random_cell(system, centring, primitive_volume, rng):
    edges, angles = random_shape(system, centring, rng)
    unit = gemmi.UnitCell(*edges, *angles)
    edges *= (primitive_volume * LATTICE_POINTS[centring] / unit.volume) ** (1 / 3)
    return gemmi.UnitCell(*np.round(edges, 4), *np.round(angles, 3))


def is_sane(cell):
    lengths = cell.parameters[:3]
    # Three angles from 65 to 115 degrees may close to a flat body.
    flatness = cell.volume / math.prod(lengths)
    return min(lengths) > SHORTEST_EDGE and max(lengths) < LONGEST_EDGE and flatness > .45


class Symmetry:
    def __init__(self, group):
        operations = list(group.operations())
        scale = gemmi.Op.DEN
        self.rotations = np.array([op.rot for op in operations]) // scale
        self.shifts = np.array([op.tran for op in operations]) / scale

    def orbit(self, x):
        """All atoms of the cell that are alike to one at x, which comes first."""
        atoms = (self.rotations @ x + self.shifts) % 1
        apart = atoms[:, None] - atoms[None]
        same = np.all(np.abs(apart - np.round(apart)) < 1e-3, axis=2)
        return atoms[~np.tril(same, -1).any(axis=1)]

    def special_point(self, rng):
        """A point of high symmetry, or one on an axis, a plane or a centre."""
        if rng.random() < .5:
            return rng.choice((0, 0, 0, .5, .5, .25, .75, 1 / 3, 2 / 3), 3)
        chosen = rng.integers(len(self.rotations))
        shift = self.shifts[chosen] + rng.integers(0, 2, 3)
        images = [rng.random(3)]
        for _ in range(11):  # a multiple of every order a rotation may have
            images.append(self.rotations[chosen] @ images[-1] + shift)
        centre = np.mean(images, axis=0)
        # A screw or a glide leaves no point where it was.
        fixed = np.allclose(self.rotations[chosen] @ centre + shift, centre)
        return centre if fixed else images[0]

    def multiplicities(self, hkl):
        """How many reflections each of hkl stands for, mates of Friedel among them."""
        images = np.einsum('ni,rij->nrj', hkl, self.rotations) @ (1 << 20, 1 << 10, 1)
        images = np.sort(np.concatenate((images, -images), axis=1), axis=1)
        return 1 + np.count_nonzero(np.diff(images, axis=1), axis=1)


NEIGHBOURS = np.stack(np.meshgrid(*[(-1, 0, 1)] * 3), axis=-1).reshape(-1, 3)


def nearest(x, atoms, axes):
    """Distance from x to the nearest of the atoms that is not x itself."""
    steps = atoms - x
    steps = (steps - np.round(steps))[:, None] + NEIGHBOURS
    distances = np.linalg.norm(steps @ axes.T, axis=2)
    return distances[distances > 1e-2].min()


def random_sites(cell, symmetry, kind, rng):
    """Sites until the cell is full, or None if they do not fit."""
    wanted = cell.volume / rng.uniform(*kind.volume)
    axes = np.array(cell.orthogonalization_matrix.tolist())
    special = rng.uniform(*kind.special)
    b_factor = rng.uniform(*kind.b_factor)
    sites, atoms = [], np.empty((0, 3))
    for _ in range(400):
        first_heavy = bool(kind.heavy) and not sites
        on_special = first_heavy or rng.random() < special
        orbit = symmetry.orbit(symmetry.special_point(rng) if on_special else rng.random(3))
        if len(atoms) + len(orbit) > 1.15 * wanted:
            continue
        together = np.concatenate((atoms, orbit))
        if nearest(orbit[0], together, axes) < CLOSEST_ATOMS:
            continue
        atoms = together
        element = str(rng.choice(kind.heavy)) if first_heavy else pick(kind.light, rng)
        sites.append((element, b_factor * rng.uniform(.7, 1.4), orbit))
        if len(atoms) > .9 * wanted or len(sites) == MOST_SITES:
            break
    return sites if 9 <= cell.volume / max(len(atoms), 1) <= 22 else None


def random_crystal(system, primitive_volume, rng):
    """A crystal, or None if this one did not come out sane."""
    group = gemmi.find_spacegroup_by_name(pick(SPACE_GROUPS[system], rng))
    cell = random_cell(system, group.hm[0], primitive_volume, rng)
    if not is_sane(cell):
        return None
    kind = KINDS[pick(KIND_WEIGHTS.get(system, SYMMETRIC_KIND_WEIGHTS), rng)]
    sites = random_sites(cell, Symmetry(group), kind, rng)
    return Crystal(system, group, cell, sites) if sites else None


def form_factors(element, quarter_q):
    table = gemmi.Element(element).it92
    return table.c + sum(a * np.exp(-b * quarter_q) for a, b in zip(table.a, table.b))


def reflections(crystal):
    """Ascending angles, intensities (no monochromator) and indices up to the last angle."""
    closest = WAVELENGTH / (2 * math.sin(math.radians(LAST_ANGLE / 2)))
    hkl = gemmi.make_miller_array(crystal.cell, crystal.group, closest)
    quarter_q = crystal.cell.calculate_1_d2_array(hkl) / 4
    structure_factors = np.zeros(len(hkl), complex)
    for element, b_factor, atoms in crystal.sites:
        waves = np.exp(2j * np.pi * (hkl @ atoms.T)).sum(axis=1)
        thermal = np.exp(-b_factor * quarter_q)
        structure_factors += form_factors(element, quarter_q) * thermal * waves
    theta = np.arcsin(WAVELENGTH * np.sqrt(quarter_q))
    polarisation = (1 + np.cos(2 * theta) ** 2) / (np.sin(theta) ** 2 * np.cos(theta))
    multiplicities = Symmetry(crystal.group).multiplicities(hkl)
    intensities = multiplicities * np.abs(structure_factors) ** 2 * polarisation
    order = np.argsort(theta, kind='stable')
    return np.degrees(2 * theta)[order], intensities[order], hkl[order]
