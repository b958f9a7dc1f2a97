#!/usr/bin/env python3
"""Checks powder CIF files: syntax by gemmi, names by the dictionaries, values by what they are.

  tools/checkcif.py [--dictionaries FOLDER] FILE...

Tells what is wrong, a line each, and ends with 1 if anything is. The names are those of the core
and powder dictionaries that the program writes. With FOLDER they are all names of both: Debian's
package finalcif has the two as core_dict.py and powder_dict.py in
usr/lib/python3/dist-packages/finalcif/cif (apt-get download, dpkg -x).
"""
import argparse
import importlib.util
import math
import pathlib
import re
import sys

from gemmi import cif

NUMBER, TEXT, DATE, BLOCK_ID, WORD = 'number', 'text', 'date', 'block id', 'word'
NAMES = {
    '_audit_creation_method': TEXT,
    '_audit_creation_date': DATE,
    '_pd_block_id': BLOCK_ID,
    '_pd_spec_description': TEXT,
    '_pd_meas_datetime_initiated': DATE,
    '_diffrn_measurement_device_type': TEXT,
    '_diffrn_radiation_probe': WORD,
    '_diffrn_radiation_wavelength': NUMBER,
    '_diffrn_radiation_wavelength_id': WORD,
    '_diffrn_radiation_wavelength_wt': NUMBER,
    **{f'_cell_length_{edge}': NUMBER for edge in 'abc'},
    **{f'_cell_angle_{angle}': NUMBER for angle in ('alpha', 'beta', 'gamma')},
    '_cell_volume': NUMBER,
    '_pd_proc_ls_prof_R_factor': NUMBER,
    '_pd_proc_ls_prof_wR_factor': NUMBER,
    '_pd_proc_ls_special_details': TEXT,
    '_pd_meas_number_of_points': NUMBER,
    **{f'_pd_meas_2theta_range_{end}': NUMBER for end in ('min', 'max', 'inc')},
    '_pd_meas_2theta_scan': NUMBER,
    '_pd_meas_counts_total': NUMBER,
    '_pd_meas_intensity_total': NUMBER,
    '_pd_calc_intensity_total': NUMBER,
    '_pd_proc_intensity_bkg_calc': NUMBER,
}
SECTION = r'[A-Za-z0-9#&*.:,\-_+/()\\\[\]]+'
DATE_PATTERN = r'\d{4}-\d\d-\d\d(T\d\d:\d\d(:\d\d)?)?'
PATTERNS = {
    DATE: DATE_PATTERN,
    BLOCK_ID: rf'{DATE_PATTERN}\|{SECTION}\|{SECTION}\|{SECTION}',
    WORD: r'\S+',
}


def names_of(folder):
    names = set()
    for module, table in (('core_dict', 'cif_core'), ('powder_dict', 'powder_dict')):
        spec = importlib.util.spec_from_file_location(module, folder / f'{module}.py')
        loaded = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(loaded)
        names |= {name.lower() for name in getattr(loaded, table)}
    return names


def layout_faults(text):
    """What the syntax of CIF 1.1 forbids beyond what a parser looks at."""
    if not text.isascii():
        yield 'letters outside ASCII'
    for number, line in enumerate(text.split('\n'), 1):
        if len(line) > 2048:
            yield f'line {number} has {len(line)} characters'
        if re.search(r'[^\x20-\x7e\t\r]', line):
            yield f'line {number} holds control characters'


def value_fault(kind, value):
    text = cif.as_string(value)
    if kind == NUMBER and value not in '.?' and math.isnan(cif.as_number(value)):
        return 'no number'
    if kind in PATTERNS and value != '?' and not re.fullmatch(PATTERNS[kind], text):
        return f'no {kind}'
    return None


def grid_faults(block):
    """The points of a loop without two-theta are as many as the range tells."""
    def numbers(tag):
        return [cif.as_number(value) for value in block.find_values(tag)]
    points = numbers('_pd_meas_number_of_points')
    counts = numbers('_pd_meas_counts_total') + numbers('_pd_meas_intensity_total')
    if points and points != [len(counts)]:
        yield f'{len(counts)} intensities where {points} points are told'
    if len(numbers('_pd_meas_2theta_scan')) == len(counts):
        return
    ends = [numbers(f'_pd_meas_2theta_range_{end}') for end in ('min', 'max', 'inc')]
    if not all(ends):
        yield 'no two-theta'
        return
    first, last, step = (values[0] for values in ends)
    if abs(first + (len(counts) - 1) * step - last) > 1e-4:
        yield f'{len(counts)} points do not go from {first} to {last} by {step}'


def faults(path, names):
    text = path.read_bytes().decode('latin-1')
    yield from layout_faults(text)
    try:
        document = cif.read_string(text)
    except (ValueError, RuntimeError) as failure:
        yield str(failure)
        return
    if len(document) == 0:
        yield 'no data block'
    for block in document:
        if not re.fullmatch(r'[\x21-\x7e]{1,75}', block.name):
            yield f'no name of a block: {block.name}'
        for item in block:
            pairs = [item.pair] if item.pair else []
            if item.loop:
                values, tags = item.loop.values, item.loop.tags
                pairs = [(tag, value) for i, tag in enumerate(tags)
                         for value in values[i::len(tags)]]
                if not values:
                    yield f'an empty loop: {tags}'
            for tag in {tag for tag, _ in pairs}:
                if tag.lower() not in names:
                    yield f'{tag} is in no dictionary'
            for tag, value in pairs:
                if fault := value_fault(NAMES.get(tag), value):
                    yield f'{tag}: {fault}: {value}'
                    break
        yield from grid_faults(block)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n', maxsplit=1)[0])
    parser.add_argument('--dictionaries', type=pathlib.Path, metavar='FOLDER')
    parser.add_argument('files', nargs='+', type=pathlib.Path, metavar='FILE')
    arguments = parser.parse_args()
    names = {name.lower() for name in NAMES}
    if arguments.dictionaries:
        names = names_of(arguments.dictionaries)
    wrong = False
    for path in arguments.files:
        for fault in faults(path, names):
            wrong = True
            print(f'{path}: {fault}')
    return 1 if wrong else 0


if __name__ == '__main__':
    sys.exit(main())
