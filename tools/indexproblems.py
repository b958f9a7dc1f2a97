#!/usr/bin/python3
"""Makes indexing problems with known answers: peak lists of random crystals.

  indexproblems.py FOLDER --seed N --count N [--grade GRADE]
  indexproblems.py FOLDER --check

FOLDER, a new one, gets one .pks file a list and answers.csv. The same seed gives the same files,
and a longer set begins with the shorter one. Without a grade the set is mixed as MIXTURE says.
--check reads the files instead of writing them: do all the lines lie where the cell of the answer
has any?

Needs numpy and gemmi (Debian: python3-numpy python3-gemmi).
"""
import argparse
import csv
import math
import os
import sys
from dataclasses import dataclass, replace

import gemmi
import numpy as np

import indextruth as truth
import randomcrystals

FIRST_ANGLE = 4.0
WEAKEST = .01  # of the strongest line
SYSTEM_WEIGHTS = {'triclinic': 3, 'monoclinic': 4, 'orthorhombic': 3, 'tetragonal': 2,
                  'trigonal': 2, 'hexagonal': 2, 'cubic': 2}
SHORT_NAMES = {'triclinic': 'tcl', 'monoclinic': 'mon', 'orthorhombic': 'ort',
               'tetragonal': 'tet', 'trigonal': 'trg', 'hexagonal': 'hex', 'cubic': 'cub'}
BRAVAIS = {'triclinic': 'a', 'monoclinic': 'm', 'orthorhombic': 'o', 'tetragonal': 't',
           'trigonal': 'h', 'hexagonal': 'h', 'cubic': 'c'}
VOLUMES = (25, 3000)  # primitive


@dataclass
class Grade:
    """All in degrees two-theta."""
    name: str
    sigma: float
    zero: float
    resolution: float
    width: float  # at 40 degrees
    foreign: int = 0
    lines: tuple = (20, 40)
    phases: int = 1


GOOD = Grade('good', .010, 0, .040, .080)
POOR = Grade('poor', .020, .020, .070, .140)
GRADES = {
    'synchrotron': Grade('synchrotron', .003, 0, .012, .020),
    'good': GOOD,
    'poor': POOR,
    'good_imp': replace(GOOD, foreign=1),
    'imp2': replace(GOOD, name='imp2', foreign=2),
    'zero+06': replace(GOOD, name='zero+06', zero=.06),
    'zero-06': replace(GOOD, name='zero-06', zero=-.06),
    'zero+10': replace(GOOD, name='zero+10', zero=.10),
    'zero-10': replace(GOOD, name='zero-10', zero=-.10),
    '15lines': replace(GOOD, name='15lines', lines=(15, 15)),
    'sigma03': replace(POOR, name='sigma03', sigma=.03, zero=0),
    'mix': replace(GOOD, name='mix', lines=(40, 60), phases=2),
}
MIXTURE = {'good': 50, 'synchrotron': 15, 'poor': 20, 'good_imp': 15}
FEWEST_OF_A_PHASE = 15
COLUMNS = ['file', 'name', 'crystal_system', 'bravais', 'centring', *truth.CELL_NAMES,
           *('red_' + name for name in truth.CELL_NAMES), 'v_prim', 'v_conv', 'n_lines', 'grade',
           'impurity', 'impurity_2theta', 'synthetic', 'm20_true', 'n20_true', 'source']


@dataclass
class Lines:
    """True places of the lines that can be seen, before any error."""
    angles: np.ndarray
    intensities: np.ndarray
    phases: np.ndarray  # whose line; -1 where two phases fall together or none gave it
    hkl: np.ndarray  # of the strongest reflection

    def part(self, chosen):
        return Lines(self.angles[chosen], self.intensities[chosen], self.phases[chosen],
                     self.hkl[chosen])


def groups(angles, intensities, resolution):
    """Starts of the lines: what comes within the resolution of their centre joins them."""
    starts, weight, moment = [0], intensities[0], intensities[0] * angles[0]
    for i in range(1, len(angles)):
        if angles[i] - moment / weight >= resolution:
            starts.append(i)
            weight = moment = 0
        weight += intensities[i]
        moment += intensities[i] * angles[i]
    return starts


def merged(angles, intensities, phases, hkl, resolution):
    visible = (angles > FIRST_ANGLE) & (intensities > 1e-9 * intensities.max())
    angles, intensities, phases, hkl = (x[visible] for x in (angles, intensities, phases, hkl))
    starts = groups(angles, intensities, resolution)
    sums = np.add.reduceat(intensities, starts)
    centres = np.add.reduceat(intensities * angles, starts) / sums
    # A neighbour that shifts the line by nothing leaves it to its phase.
    of_first = np.add.reduceat(intensities * (phases == 0), starts) / sums
    owners = np.where(of_first > .95, 0, np.where(of_first < .05, 1, -1))
    ends = starts[1:] + [len(angles)]
    strongest = [s + int(intensities[s:e].argmax()) for s, e in zip(starts, ends)]
    return Lines(centres, sums, owners, hkl[strongest])


def first_lines(lines, wanted):
    """The first lines that are not too weak beside the strongest among them."""
    strongest = np.maximum.accumulate(lines.intensities)
    for end in range(wanted, len(lines.angles) + 1):
        seen = lines.intensities[:end] >= WEAKEST * strongest[end - 1]
        if np.count_nonzero(seen) == wanted:
            return lines.part(np.flatnonzero(seen))
    return lines.part(lines.intensities >= WEAKEST * strongest[-1])


def pattern(crystals, wanted, resolution):
    """Lines of all phases together, each as strong as the others, and all their reflections."""
    patterns = [randomcrystals.reflections(crystal) for crystal in crystals]
    angles, intensities, hkl = (np.concatenate(x) for x in zip(*patterns))
    intensities = np.concatenate([i / i.max() for _, i, _ in patterns])
    phases = np.repeat(np.arange(len(crystals)), [len(p[0]) for p in patterns])
    order = np.argsort(angles, kind='stable')
    every = [x[order] for x in (angles, intensities, phases, hkl)]
    return first_lines(merged(*every, resolution), wanted), [p[0] for p in patterns]


def is_well_defined(crystal, lines, reflections, grade):
    if len(lines.angles) < (FEWEST_OF_A_PHASE if grade.phases > 1 else grade.lines[0]):
        return False
    reduced = truth.reduced_cell(crystal.cell, crystal.centring)
    symmetry = truth.lattice_symmetry(reduced)
    return (truth.has_its_own_metric(crystal, symmetry) and
            truth.determines_the_cell(crystal, lines.angles, lines.hkl, grade.sigma) and
            truth.needs_the_whole_lattice(reduced, symmetry, lines.angles,
                                          reflections[reflections <= lines.angles[-1]],
                                          grade.resolution))


def random_volume(near, rng):
    if near is not None:
        return float(np.clip(near * rng.uniform(.6, 1.6), *VOLUMES))
    # Small cells of high symmetry often have too few lines: they are drawn more often.
    low, high = np.log(VOLUMES)
    return math.exp(low + (high - low) * rng.random() ** 1.5)


def random_phases(system, grade, rng):
    crystals = []
    while len(crystals) < grade.phases:
        near = crystals[0].primitive_volume if crystals else None
        if crystals:
            system = randomcrystals.pick(SYSTEM_WEIGHTS, rng)
        crystal = randomcrystals.random_crystal(system, random_volume(near, rng), rng)
        if crystal:
            crystals.append(crystal)
    return crystals


def problem(grade, rng):
    """Crystals and the lines they give, tried until the answer is well defined."""
    system = randomcrystals.pick(SYSTEM_WEIGHTS, rng)
    wanted = rng.integers(grade.lines[0], grade.lines[1] + 1)
    while True:
        crystals = random_phases(system, grade, rng)
        lines, reflections = pattern(crystals, wanted, grade.resolution)
        if all(is_well_defined(crystal, lines.part(lines.phases == i), reflections[i], grade)
               for i, crystal in enumerate(crystals)):
            return crystals, lines


def width(angle, grade):
    growth = np.tan(np.radians(angle / 2)) / math.tan(math.radians(20))
    return grade.width * (.75 + .25 * growth)


def with_foreign_lines(lines, grade, rng):
    """Within the first 20 lines, 2 to 20 % of the strongest, and apart from all the others."""
    foreign = []
    while len(foreign) < grade.foreign:
        angle = rng.uniform(lines.angles[0], lines.angles[min(19, len(lines.angles) - 1)])
        if np.abs(lines.angles - angle).min() < width(angle, grade):
            continue
        foreign.append(angle)
        place = np.searchsorted(lines.angles, angle)
        strength = rng.uniform(.02, .2) * lines.intensities.max()
        lines = Lines(np.insert(lines.angles, place, angle),
                      np.insert(lines.intensities, place, strength),
                      np.insert(lines.phases, place, -1), np.insert(lines.hkl, place, 0, axis=0))
    return lines


def measured(lines, grade, rng):
    angles = lines.angles + grade.zero + rng.normal(0, grade.sigma, len(lines.angles))
    order = np.argsort(angles)
    lines = lines.part(order)
    lines.angles = np.round(angles[order], 3)
    return lines


def write_list(path, lines, grade):
    strength = 10000 / lines.intensities.max()
    with open(path, 'w', newline='\n') as file:
        for angle, intensity in zip(lines.angles, lines.intensities * strength):
            shape = f'{width(angle, grade):9.4f}{.5:9.4f}'
            file.write(f'{angle:9.3f}{intensity:10.1f}{shape}{shape}{0:5d}{0:5d}{0:5d}{1:5d}\n')


def answer(file, crystal, phase, lines, grade, source):
    reduced = truth.reduced_cell(crystal.cell, crystal.centring)
    own = lines.angles[lines.phases == phase]
    merit, possible = truth.figure_of_merit(reduced, own)
    foreign = lines.angles[~lines.hkl.any(axis=1)]
    cells = [f'{x:.4f}' for cell in (crystal.cell, reduced) for x in cell.parameters]
    return [file, f'{crystal.group.xhm()} {len(crystal.sites)} sites', crystal.system,
            BRAVAIS[crystal.system] + crystal.centring, crystal.centring, *cells,
            f'{crystal.primitive_volume:.2f}', f'{crystal.cell.volume:.2f}', len(lines.angles),
            grade.name, grade.foreign, ' '.join(f'{x:.3f}' for x in foreign), 1,
            f'{merit:.1f}', possible, source]


def make(folder, seed, count, grade_name):
    if os.path.exists(folder):  # lists of an older set would be taken for this one
        sys.exit(f'{folder} exists already.')
    os.makedirs(folder)
    rows = []
    for number in range(1, count + 1):
        rng = np.random.default_rng((seed, number))
        chosen = grade_name or randomcrystals.pick(MIXTURE, rng)
        grade = GRADES[chosen]
        crystals, lines = problem(grade, rng)
        lines = measured(with_foreign_lines(lines, grade, rng), grade, rng)
        file = f'{SHORT_NAMES[crystals[0].system]}{number:03d}_{chosen}.pks'
        write_list(os.path.join(folder, file), lines, grade)
        source = f'simulated:{seed}/{number}'
        rows += [answer(file, crystal, phase, lines, grade, source)
                 for phase, crystal in enumerate(crystals)]
    with open(os.path.join(folder, 'answers.csv'), 'w', newline='\n') as file:
        csv.writer(file, lineterminator='\n').writerows([COLUMNS] + rows)


def unexplained_lines(folder, file, rows):
    """Lines of a list that no cell of its answers has, and how many there ought to be."""
    grade = GRADES[file[:-len('.pks')].split('_', 1)[1]]
    with open(os.path.join(folder, file)) as lines:
        angles = np.array([float(line[:9]) for line in lines]) - grade.zero
    distances = np.full(len(angles), np.inf)
    for row in rows:
        cell = gemmi.UnitCell(*[float(row['red_' + name]) for name in truth.CELL_NAMES])
        _, q = truth.lattice_lines(cell, truth.q_of(angles.max() + 1))
        distances = np.minimum(distances, truth.distances_to_nearest(angles, truth.angle_of(q)))
    far = 4.5 * grade.sigma + grade.resolution / 2
    return np.count_nonzero(distances > far), grade.foreign


def check(folder):
    with open(os.path.join(folder, 'answers.csv')) as file:
        answers = list(csv.DictReader(file))
    files = {row['file'] for row in answers}
    wrong = 0
    for file in sorted(files):
        found, foreign = unexplained_lines(folder, file, [r for r in answers if r['file'] == file])
        # A foreign line may fall where the lattice has one.
        if found > foreign:
            print(f'{file}: {found} lines lie where no cell has any, {foreign} should')
            wrong += 1
    print(f'{len(files)} lists, {wrong} wrong')
    return wrong > 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('folder')
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--count', type=int, default=100)
    parser.add_argument('--grade', choices=GRADES)
    parser.add_argument('--check', action='store_true')
    options = parser.parse_args()
    if options.check:
        sys.exit(check(options.folder))
    make(options.folder, options.seed, options.count, options.grade)


if __name__ == '__main__':
    main()
