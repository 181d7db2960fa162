#!/usr/bin/env python3
"""Writes the example workbooks of OrvValis, each as .xlsx and as .ods, and the broken ones.

    python3 make_examples.py [folder]

Run it again after a change of a figure; nothing else is needed but Python's standard library. README.md tells where the
figures come from.
"""

import io
import math
import os
import sys
import zipfile

sys.dont_write_bytecode = True

from workbook_writer import (Formula, Sheet, cell_name, entry, write_archive, write_ods, write_xlsx,  # noqa: E402
                             xlsx_parts)

# --- figures -------------------------------------------------------------------------------------------------------

# Hall thruster of the 1.35 kW class, 300 V, 5.627 mg/s xenon: angle (deg), ion current density at 1 m (mA/cm2), ion
# energy per charge (V). None: not measured at this angle.
PLUME = [
    (0, 0.8068, None), (5, 0.7282, None), (10, 0.5359, 228.6), (15, 0.3445, None), (20, 0.2276, 231.9),
    (25, 0.1630, None), (30, 0.1200, 228.6), (35, 0.08833, None), (40, 0.0627, 220.5), (45, 0.04613, None),
    (50, 0.03276, 205.9), (60, 0.0179, 171.1), (65, None, 150.0), (70, 0.01271, 131.4), (80, 0.00644, 92.4),
    (85, None, 77.8), (90, 0.003665, 68.9), (100, 0.002443, None), (110, 0.001595, None), (120, 0.001047, None),
    (140, 0.0006405, None),
]
BEAM_CURRENT = 3.79  # A: integral of the current density over the half sphere in front of the thruster
# A row at exactly 0 would be skipped by the interpolation, which takes the value of the next row instead.
FIRST_ANGLE = 0.001
# deg: somewhat beyond the last measured angle, up to which the tables keep their last value.
LIMIT_ANGLE = 150
# Share of the singly charged ions in the density, by angle: illustrative.
SHARE_XE1 = [(FIRST_ANGLE, 0.96), (30, 0.95), (60, 0.93), (90, 0.9)]

# name: density (kg/m3), molar mass (g/mol), yield at normal incidence by energy (atoms per ion), ratio of the yield at
# the peak angle to that at normal incidence (illustrative), source
ENERGIES = (100, 200, 300, 500, 1000)
PEAK_ANGLES = (45, 50, 55, 58, 60)  # deg, by energy: illustrative, inside the published range
SURVEY = "Yamamura and Tawara 1996; peak illustrative"
MATERIALS = {
    "silver": (10490, 107.87, (0.507, 1.268, 1.913, 2.962, 4.847), 1.6, SURVEY),
    "aluminium": (2700, 26.98, (0.068, 0.261, 0.442, 0.747, 1.305), 2.2, SURVEY),
    "silicon": (2330, 28.09, (0.016, 0.094, 0.177, 0.323, 0.599), 2.0, SURVEY + "; stands in for cover glass"),
    "titanium": (4506, 47.87, (0.036, 0.142, 0.243, 0.415, 0.731), 2.0, SURVEY),
    "polyimide": (1420, 9.80, None, None, "illustrative"),
}
# Polyimide, as tables in cells: yield by energy, factor by angle, cosine exponent by energy. Illustrative.
POLYIMIDE = ("50 0.02|100 0.06|200 0.14|300 0.21|500 0.32|1000 0.52",
             "0.001 1|20 1.08|40 1.5|55 1.95|60 2|70 1.7|80 0.8|90 0.001", "50 1|1000 1")
# Momentum and heat accommodation: normal, tangential, thermal. Illustrative.
ACCOMMODATION = {
    "silver": (0.85, 0.9, 0.9), "aluminium": (0.85, 0.9, 0.9), "silicon": (0.8, 0.85, 0.85),
    "titanium": (0.85, 0.9, 0.9), "polyimide": (0.9, 0.95, 0.9),
}
GASES = ("Xe+", "Xe++")
XENON_MASS = 131.293

MEASURED = "Diamant et al. 2014"
FIT = "rough fit of the measured plume, illustrative"


def table_cell(pairs):
    return "|".join("%g %g" % (x, y) for x, y in pairs)


def current_law(current_density):
    """mA/cm2 at 1 m as the density law: A per steradian over half the beam current."""
    return current_density * 10 / (BEAM_CURRENT / 2)


DENSITY_CELL = "|".join("%g %.5g" % (angle or FIRST_ANGLE, current_law(j)) for angle, j, _ in PLUME if j)
ENERGY_CELL = table_cell((angle, energy) for angle, _, energy in PLUME if energy)

# name, remark, then the columns 3 to 17 of Table 1, source
THRUSTERS = {
    "HT1350-measured": ("measured plume in tables", 3.79, 230, DENSITY_CELL, None, None, LIMIT_ANGLE, None, None,
                        ENERGY_CELL, table_cell(SHARE_XE1), None, None, None, 90, 1000,
                        MEASURED + "; share of Xe+ illustrative; C4 rounded"),
    "HT1350-cosine": ("cosine law, constant energy", 3.79, 230, 7.85, 7.34, 0.125, 90, None, None, None, None, None,
                      None, None, None, 0, FIT),
    "HT1350-lorentz": ("one charge, j = C9 + C10/(a2 + C11)", 3.79, 230, None, None, None, None, -0.012, 126.1, 143.3,
                       90, -372, 12522000, 20000, 90, 1, FIT),
    "HT1350-cosine-E": ("cosine law, energy by angle", 3.79, 230, 7.85, 7.34, 0.125, 90, None, None, None, 100, -372,
                        12522000, 20000, 90, 2, FIT),
    "HT1350-single": ("cosine law, one charge", 3.79, 230, 7.85, 7.34, 0.125, 90, None, None, None, None, None, None,
                      None, None, 3, FIT),
    "HT1350-exponent": ("exponential law", 3.79, 230, 4.95, -4.006, -0.003125, 90, 4.085, 0.02978, 3012, 0.5, 2454,
                        0.6485, -321, 90, 100, FIT),
}

# --- the database block --------------------------------------------------------------------------------------------

HEADS = {
    1: ("thruster", "remark (not read)", "C3 beam current (A)", "C4 beam energy (eV)",
        "C5 density law a - or table: angle (deg) N (1/sr)", "C6 density law b", "C7 density law c",
        "C8 limit angle of the plume (deg)", "C9 density law d", "C10 density law e",
        "C11 density f / energy a - or table: angle (deg) energy (eV)",
        "C12 energy limit (deg) / energy b - or table: angle (deg) share of gas 1", "C13 energy c", "C14 energy d",
        "C15 energy e", "C16 energy constant beyond (deg)", "C17 plume model", "source (not read)"),
    10: ("thruster", "gas, lowest charge first", "share of the density (-)", "source (not read)"),
    6: ("gas", "remark (not read)", "charge number (-)", "molar mass (g/mol)"),
    7: ("material", "mass density (kg/m3)", "molar mass (g/mol)", "source (not read)"),
    8: ("gas", "material", "normal momentum accommodation (-)", "tangential momentum accommodation (-)",
        "thermal accommodation (-)", "in use (Y/N)", "source (not read)"),
    9: ("gas", "material", "ion energy (eV)", "yield at normal incidence (atoms/ion)",
        "yield at the peak angle (atoms/ion)", "peak angle (deg)", "cosine exponent of the emission (-)",
        "or table: energy (eV) yield (atoms/ion)", "table: angle (deg) factor (-)",
        "table: energy (eV) cosine exponent (-)", "(not used)", "source (not read)"),
}
TITLES = {
    1: "Table      1 Thrusters and their plumes",
    6: "Table      6 Gases",
    7: "Table      7 Materials",
    8: "Table      8 Momentum and heat accommodation",
    9: "Table      9 Sputter yield",
    10: "Table      10 Gases of each thruster",
}


def table_rows(thrusters, materials):
    """The data rows of each table, in the order in which the tables stand on the sheet."""
    rows = {1: [], 10: [], 6: [], 7: [], 8: [], 9: []}
    for name in thrusters:
        rows[1].append((name,) + THRUSTERS[name])
        for gas, share in zip(GASES, (0.96, 0.04)):
            rows[10].append((name, gas, share, "illustrative"))
    rows[6] = [("Xe+", "singly charged xenon", 1, XENON_MASS), ("Xe++", "doubly charged xenon", 2, XENON_MASS)]
    for material in materials:
        density, mass, yields, ratio, source = MATERIALS[material]
        rows[7].append((material, density, mass, "public tables" if yields else "illustrative"))
        for gas in GASES:
            rows[8].append((gas, material) + ACCOMMODATION[material] + ("Y", "illustrative"))
            if yields:
                for energy, normal, angle in zip(ENERGIES, yields, PEAK_ANGLES):
                    peak = float("%.3g" % (normal * ratio))
                    rows[9].append((gas, material, energy, normal, peak, angle, 1, None, None, None, None, source))
            else:
                rows[9].append((gas, material) + (None,) * 5 + POLYIMIDE + (None, source))
    return rows


def put_database(sheet, row, column, beside, thrusters, materials, omit=()):
    """Writes the keyword and the tables; returns the row of each table's first data row."""
    sheet.put(row, column, "DatabaseOrvValis", "key")
    if beside:
        sheet.put(row, column + 1, beside)
    first = {}
    row += 2
    for number, rows in table_rows(thrusters, materials).items():
        if number in omit:
            continue
        sheet.put(row, column, TITLES[number], "band")
        for k in range(1, len(HEADS[number])):
            sheet.put(row, column + k, None, "band")
        sheet.put_row(row + 1, column, HEADS[number], "head")
        sheet.heights[row + 1] = {1: 64, 8: 52, 9: 52}.get(number, 28)
        first[number] = row + 2
        for k, values in enumerate(rows):
            for place, value in enumerate(values):
                sheet.put(row + 2 + k, column + place, value, "input")
        row += len(rows) + 3
    return first


def put_model(sheet, row, column, title, directives, model):
    """Writes the keyword row and the rows of primitives: (material, specification, remark)."""
    remarks = column + REMARKS
    for k in range(column - 1, remarks + 3):
        sheet.put(row - 1, k, None, "head")
    sheet.put(row - 1, column - 1, "n°", "head")
    # Directly above the keyword a text would become part of the title.
    sheet.put(row - 1, column + 1, "first row: directives - below: one primitive a row", "head_line")
    sheet.put(row - 1, remarks, "remarks (in the first row: part of the title)", "head_line")
    sheet.put(row, column, "Orvdata " + title, "key")
    for k in range(column + 2, remarks + 3):
        sheet.put(row, k, None, "key")
    sheet.put(row, column + 1, directives, "key")
    sheet.active = (row, column)
    for k, (material, specification, remark) in enumerate(model, 1):
        text = specification.result if isinstance(specification, Formula) else specification
        style = "thruster" if " thr " in text else "text"
        sheet.put(row + k, column - 1, k, "index")
        sheet.put(row + k, column, material, style)
        sheet.put(row + k, column + 1, specification, style)
        if remark:
            sheet.put(row + k, remarks, remark, "note")


def set_widths(sheet):
    sheet.widths = {1: 5, 2: 30, 3: 28}
    sheet.widths.update({column: 15 for column in range(4, 20)})


REMARKS = 8  # columns behind the keyword's: the specifications run over the empty cells before it
GAP = 4  # rows between the model and the database

# --- the telecommunications satellite ------------------------------------------------------------------------------

CENTRE_OF_MASS = (0, 0, 1.2)
THRUSTER_AT = (0, -1.3, -0.2)
# Angle between the plume axis and -Z such that the thrust passes through the centre of mass.
CANT = math.degrees(math.atan((CENTRE_OF_MASS[1] - THRUSTER_AT[1]) / (CENTRE_OF_MASS[2] - THRUSTER_AT[2])))
TURN = round(180 - CANT, 2)

THRUSTER_SPECIFICATION = Formula(
    '="Hall_thruster thr size 0.05 0.03 cells 1 1 R X "&Parameters!B11&" T "&Parameters!B7&" "&Parameters!B8&" "'
    "&Parameters!B9",
    "Hall_thruster thr size 0.05 0.03 cells 1 1 R X %s T %s %s %s" % ((TURN,) + THRUSTER_AT))

TELECOM = [
    ("polyimide", "Earth_panel rect size 2.0 2.2 cells 8 8 T 0 0 2.6", "normal +Z, towards the Earth"),
    ("polyimide", "Anti_earth_panel rect size 2.0 2.2 cells 20 22 R X 180", "normal -Z; the launcher ring shades it"),
    ("polyimide", "East_panel rect size 2.6 2.2 cells 13 11 R Y 90 T 1.0 0 1.3", "normal +X"),
    ("polyimide", "West_panel rect size 2.6 2.2 cells 13 11 R Y -90 T -1.0 0 1.3", "normal -X"),
    ("polyimide", "South_panel rect size 2.0 2.6 cells 8 8 R X -90 T 0 1.1 1.3", "normal +Y"),
    ("polyimide", "North_panel rect size 2.0 2.6 cells 10 13 R X 90 T 0 -1.1 1.3", "normal -Y; behind its radiator"),
    ("silver", "North_radiator rect size 1.7 2.1 cells 17 21 R X 90 T 0 -1.12 1.35",
     "silvered mirrors, 2 cm in front of the panel"),
    ("silver", "South_radiator rect size 1.7 2.1 cells 6 8 R X -90 T 0 1.12 1.35", "silvered mirrors"),
    ("titanium", "Launcher_ring cyl size 0.597 0.08 1 cells 30 2 T 0 0 -0.08", "stands out of the anti-earth panel"),
    ("titanium", "Thruster_bracket rectOriented size -0.03 -1.1 -0.002 0.03 -1.1 -0.002 0.03 -1.3 -0.12 "
     "-0.03 -1.3 -0.12 cells 3 10", "four corners; their order gives the side of the normal"),
    ("HT1350-measured", THRUSTER_SPECIFICATION, "a formula: the plume axis points away from the centre of mass"),
    ("aluminium", "Tower cyl size 0.35 1.2 1 cells 24 8 T 0 0 2.6", "on the earth panel"),
    ("aluminium", "East_reflector par size 1.2 0.3 1 cells 30 8 R Y -25 T 2.75 -0.15 0.3",
     "partly in the shadow of the body"),
    ("aluminium", "West_reflector sph size 2.4 0.28 1 cells 24 6 R Y 25 T -2.7 0 0.3", "a cap cut from a sphere"),
    ("aluminium", "North_yoke cyl size 0.06 1.7 1 cells 8 8 R X 90 T 0 -1.1 1.4", "between body and wing"),
    ("aluminium", "South_yoke cyl size 0.06 1.7 1 cells 6 4 R X -90 T 0 1.1 1.4", ""),
    ("silicon|polyimide", "North_wing rect2sides size 2.8 10.6 -1.1 1.1 1 1 0.025 cells 32 18 T 0 0 -0.0125 "
     "AutomaticRotation X R Z -90 T 0 0 1.4", "turns about its long axis; cover glass on the side of -Z"),
    ("silicon|polyimide", "South_wing rect2sides size 2.8 10.6 -1.1 1.1 1 1 0.025 cells 16 8 T 0 0 -0.0125 "
     "R Z 90 T 0 0 1.4", "fixed; in the shadow of the body"),
]


def parameters_sheet():
    sheet = Sheet("Parameters")
    sheet.widths = {1: 46, 2: 14, 3: 70}
    sheet.put(1, 1, "Numbers from which the model takes its formulas", "title")
    sheet.put_row(2, 1, ("quantity", "value", "remark"), "head")
    for k, axis in enumerate("XYZ"):
        sheet.put_row(3 + k, 1, ("centre of mass, %s (m)" % axis, CENTRE_OF_MASS[k]), "input")
        sheet.put_row(7 + k, 1, ("thruster exit, %s (m)" % axis, THRUSTER_AT[k]), "input")
    sheet.put(5, 3, "also the point of the directive T on the sheet Model", "note")
    sheet.put(9, 3, "bracket at the edge of the anti-earth panel and the north panel", "note")
    sheet.put(10, 1, "cant of the plume axis from -Z (deg)")
    sheet.put(10, 2, Formula("=DEGREES(ATAN((B4-B8)/(B5-B9)))", CANT))
    sheet.put(10, 3, "the thrust passes through the centre of mass", "note")
    sheet.put(11, 1, "rotation about X in the thruster's row (deg)")
    sheet.put(11, 2, Formula("=ROUND(180-B10,2)", TURN))
    sheet.put(11, 3, "a thruster fires along +Z before it is placed", "note")
    return sheet


def plume_sheet(current_cell):
    """The measured figures, the density law made from them, and the total current as a check."""
    sheet = Sheet("Plume")
    sheet.widths = {1: 12, 2: 18, 3: 18, 4: 18, 5: 22, 6: 60}
    sheet.put(1, 1, "The measured plume behind the tables in the cells of Table 1", "title")
    sheet.put(2, 1, "Hall thruster of the 1.35 kW class, 300 V, 5.627 mg/s xenon; " + MEASURED, "note")
    sheet.put_row(4, 1, ("angle (deg)", "ion current density at 1 m (mA/cm2)", "energy per charge (V)",
                         "density law N (1/sr)", "current from the row above to here (A)"), "head")
    sheet.heights[4] = 40
    previous, total, first, last = None, 0.0, None, None
    for k, (angle, current, energy) in enumerate(PLUME):
        row = 5 + k
        for column in range(1, 6):
            sheet.put(row, column, None, "input")
        sheet.put(row, 1, angle, "input")
        if energy is not None:
            sheet.put(row, 3, energy, "input")
        if current is None:
            continue
        sheet.put(row, 2, current, "input")
        sheet.put(row, 4, Formula("=ROUND(B%d*10/(Model!%s/2),5)" % (row, current_cell),
                                  round(current_law(current), 5)), "input")
        if previous and angle <= 90:
            above, angle0, current0 = previous
            band = round(2 * math.pi * 10 * (current0 + current) / 2 * (
                math.cos(math.radians(angle0)) - math.cos(math.radians(angle))), 4)
            sheet.put(row, 5, Formula("=ROUND(2*PI()*10*(B%d+B%d)/2*(COS(RADIANS(A%d))-COS(RADIANS(A%d))),4)"
                                      % (above, row, above, row), band), "input")
            total += band
            first, last = first or row, row
        previous = (row, angle, current)
    row = 6 + len(PLUME)
    for column in range(1, 6):
        sheet.put(row, column, None, "band")
    sheet.put(row, 1, "front half", "band")
    sheet.put(row, 5, Formula("=SUM(E%d:E%d)" % (first, last), round(total, 4)), "band")
    sheet.put(row, 6, "compare the beam current C3 of Table 1; this simple sum is 2 % high", "note")
    return sheet


def telecom():
    sheet = Sheet("Model")
    set_widths(sheet)
    sheet.put(1, 1, "A telecommunications satellite with a Hall thruster", "title")
    for k, line in enumerate((
            "Axes in metres: +Z to the Earth, +X east, +Y south; origin in the plane between body and launcher ring. "
            "The solar arrays stand along -Y (north) and +Y (south).",
            "Each row below the keyword is one primitive: its material (or the thruster's name), then its "
            "specification. The first empty cell of column B ends the model.",
            "The tables of the thrusters, gases and materials follow below. The sheet Parameters feeds the formula of "
            "the thruster's row, the sheet Plume shows the measured figures.",
            "The analysis starts from the selected cell: keep it on the keyword. Where the figures come from: see "
            "README.md beside this file.")):
        sheet.put(2 + k, 1, line, "note")
    put_model(sheet, 8, 2, "Telecom satellite", "T 0 0 1.2 Ro 0 360 10 Twall 300 Log 1 Recto 1", TELECOM)
    first = put_database(sheet, 8 + len(TELECOM) + GAP, 2, "Xenon Hall thruster of the 1.35 kW class", list(THRUSTERS),
                         list(MATERIALS))
    limit = cell_name(first[1], 2 + 7)
    sheet.put(8, 2 + REMARKS, Formula('="limit "&%s&" deg"' % limit, "limit %d deg" % LIMIT_ANGLE), "key")
    # Both gases are xenon: the second takes the mass of the first.
    mass = cell_name(first[6], 2 + 3)
    sheet.put(first[6] + 1, 2 + 3, Formula("=" + mass, XENON_MASS), "input")
    return [sheet, parameters_sheet(), plume_sheet(cell_name(first[1], 2 + 2))]


# --- the gallery ---------------------------------------------------------------------------------------------------

GALLERY = [
    ("HT1350-cosine", "Thruster_thr thr size 0.05 0.1 cells 6 4", "fires along +Z at the wall of primitives"),
    ("aluminium", "Plate_rect rect size 1.2 0.8 cells 6 4 T -5 5 5", "centred, normal +Z"),
    ("aluminium", "Plate_rectfree rectfree size -0.2 1.0 -0.3 0.5 cells 6 4 T -3.4 4.9 5", "given by its limits"),
    ("aluminium", "Plate_rectOriented rectOriented size -1 4.625 5 -1 5.375 5 -1 5.375 6 -1 4.625 6 cells 4 6",
     "given by four corners in space; their order turns the normal to +X"),
    ("silicon|aluminium", "Plate_2sides_gap_plus rect2sides size -0.6 0.6 -0.4 0.4 1.3 1.2 0.1 cells 8 10 T 1 5 5",
     "gap above 0: first face down, second face up"),
    ("silicon|aluminium", "Plate_2sides_gap_minus rect2sides size -0.6 0.6 -0.4 0.4 1.3 1.2 -0.1 cells 8 10 T 3 5 5",
     "gap below 0: first face up, second face down"),
    ("silicon", "Plate_2sides_gap_zero rect2sides size -0.6 0.6 -0.4 0.4 1.3 1 0 cells 9 5 T 5 5 5",
     "gap 0: one face, growing cells"),
    ("aluminium", "Cone_con con size 0.5 0.8 1 cells 16 5 T -5 3 5", "the tip is at the origin of its own frame"),
    ("aluminium", "Cut_cone_con2 con2 size 0.5 0.5 1 20 cells 16 4 T -3 3 5", "half-angle 20 degrees"),
    ("aluminium", "Disc_disc disc size 0.5 0.15 0.75 cells 15 4 T -1 3 5",
     "inner radius 0.15, three quarters of a turn"),
    ("aluminium", "Sphere_sph sph size 0.5 1 1 cells 16 8 T 1 3 5", "height = diameter: closed"),
    ("aluminium", "Ellipsoid_elli elli size 0.5 0.5 1 0.4 cells 16 6 T 3 3 5", "polar half axis 0.4, cut at 0.5"),
    ("aluminium", "Paraboloid_par par size 0.6 0.3 0.5 cells 10 5 T 5 3 5", "half a turn"),
    ("aluminium", "Cylinder_cylellipse cylellipse size 0.6 0.5 1 0.5 cells 16 4 T -5 1 5", "Y radius half the X one"),
    ("aluminium", "Screened_cylshape cylshape size 0.03 0.4 1 cells 14 4 T -3 1 5", "12 round columns and 2 plates"),
    ("aluminium", "Screened_cylscreen cylscreen size 0.03 0.4 1 cells 14 4 T -1 1 5", "the same shape"),
    ("aluminium", "Screened_cylshape4 cylshape4 size 0.04 0.4 1 cells 16 4 T 1 1 5", "12 round columns and 4 plates"),
    ("aluminium", "Screened_cylscreen4 cylscreen4 size 0.04 0.4 1 cells 16 4 T 3 1 5", "the same shape"),
    ("aluminium", "Screened_cylshape4b cylshape4b size 0.04 0.4 1 cells 16 4 T 5 1 5", "four plates, other places"),
    ("aluminium", "Screened_cylscreen4b cylscreen4b size 0.04 0.4 1 cells 16 4 T -5 -0.5 5", "the same shape"),
    ("aluminium", "Screened_cylshapeb cylshapeb size 0.004 0.4 1 cells 10 4 T -2 -0.5 5", "plates of 400 radii"),
    ("aluminium", "Screened_cylscreenb cylscreenb size 0.004 0.4 1 cells 10 4 T 2.5 -0.5 5", "the same shape"),
    ("aluminium", "Screened_cylshape44 cylshape44 size 0.004 0.4 1 cells 20 4 T -4 -2 5",
     "12 round columns and 8 plates"),
    ("aluminium", "Screened_cylscreen44 cylscreen44 size 0.004 0.4 1 cells 20 4 T 4 -2 5", "the same shape"),
    ("aluminium", "Six_cylshapeX6b cylshapeX6b size 0.06 0.4 1 -0.6 0 0.3 0.6 0.9 1.2 1.8 cells 50 4 T -4.5 -3.5 5",
     "six cylinders of 8 columns, their places given, and 2 plates"),
    ("aluminium", "Six_cylscreenX6b cylscreenX6b size 0.06 0.4 1 -0.6 0 0.3 0.6 0.9 1.2 1.8 cells 50 4 T 3.5 -3.5 5",
     "the same shape"),
    ("aluminium", "Six_cylshapeX6 cylshapeX6 size 0.01 0.4 1 cells 38 4 T -2.1 -4.5 5",
     "six cylinders at fixed places"),
    ("aluminium", "Six_cylscreenX6 cylscreenX6 size 0.01 0.4 1 cells 38 4 T -2.1 -5.5 5", "the same shape"),
    ("aluminium", "Cylinder_shells cyl size 0.6 0.5 3.5 cells 12 4 T 0 -2.4 5",
     "last row: three shells of half a turn; only the last primitive may have shells"),
]


def gallery():
    sheet = Sheet("Model")
    set_widths(sheet)
    sheet.put(1, 1, "Every type of primitive", "title")
    for k, line in enumerate((
            "A wall of primitives at Z = 5 m, seen from a thruster at the origin. Each name tells its type.",
            "Choose a geometry plot (1 to 10) to look at cells, normals and areas; copy a row into your own model.")):
        sheet.put(2 + k, 1, line, "note")
    put_model(sheet, 6, 2, "Gallery of primitives", "T 0 0 0 Twall 300 Log 0 Recto 0", GALLERY)
    put_database(sheet, 6 + len(GALLERY) + GAP, 2, "Two materials", ["HT1350-cosine"], ["aluminium", "silicon"])
    sheet.put(6, 2 + REMARKS, Formula('=COUNT(A7:A%d)&" primitives"' % (6 + len(GALLERY)),
                            "%d primitives" % len(GALLERY)), "key")
    return [sheet]


# --- the tutorial ----------------------------------------------------------------------------------------------------

TUTORIAL_AT = 6  # row of the keyword
TUTORIAL_ROOM = 10  # rows for the model, so that all its sheets have the database at the same place
TUTORIAL_DIRECTIVES = "T 0 0 0.6 Twall 300"
TUTORIAL = [
    ("aluminium", "Bottom rect size 1 1 cells 20 20 R X 180", "normal -Z"),
    ("aluminium", "East rect size 1.2 1 cells 12 10 R Y 90 T 0.5 0 0.6", "normal +X"),
    ("silicon", "Wing rect size 1 3 cells 10 30 R X 180 T 0 2.1 0.3", "its cells look down"),
    ("silver", "Dish par size 0.5 0.12 1 cells 24 6 R Y -20 T 1.2 0 -0.4", "an antenna"),
    ("HT1350-measured", "Thruster thr size 0.05 0.03 cells 1 1 R X 180 T 0 0 -0.1", "fires along -Z"),
]
TUTORIAL_SHIELD = ("titanium", "Shield rect size 0.4 0.6 cells 8 12 R Y -90 T 0.3 0 -0.3", "the new row")


def tutorial_variant(row, material, specification, remark):
    model = list(TUTORIAL)
    model[row] = (material or model[row][0], specification or model[row][1], remark)
    return model


def tutorial_sheet(name, title, note, model):
    sheet = Sheet(name)
    set_widths(sheet)
    sheet.put(1, 1, title, "title")
    sheet.put(2, 1, note, "note")
    sheet.put(3, 1, "docs/tutorial.md goes through this workbook sheet by sheet.", "note")
    put_model(sheet, TUTORIAL_AT, 2, "Small satellite, sheet " + name, TUTORIAL_DIRECTIVES, model)
    put_database(sheet, TUTORIAL_AT + TUTORIAL_ROOM, 2, "Xenon Hall thruster of the 1.35 kW class", ["HT1350-measured"],
                 ["silver", "aluminium", "silicon", "titanium"])
    return sheet


TUTORIAL_ORBIT_ROWS = 49
TUTORIAL_ORBIT_FIRST = 10
TUTORIAL_BURNS = [(0, "E"), (4, "S"), (6.5, "E"), (16, "S"), (18.5, "E")]


def tutorial_orbit():
    """A circular orbit made of formulas."""
    sheet = Sheet("Orbit")
    sheet.widths = {1: 26, 2: 14, 3: 14, 4: 14, 5: 14, 6: 14, 7: 8}
    sheet.put(1, 1, "One day on an inclined synchronous orbit", "title")
    figures = (("radius (km)", 42164), ("inclination (deg)", 30), ("first day (2026-03-19)", 46100),
               ("period (day)", 0.99727))
    for k, (head, value) in enumerate(figures):
        sheet.put(2 + k, 1, head)
        sheet.put(2 + k, 2, value, "input")
    radius, inclination, day, period = (value for _, value in figures)
    lines = []
    for k in range(TUTORIAL_ORBIT_ROWS):
        angle = k * 360 / (TUTORIAL_ORBIT_ROWS - 1)
        row = TUTORIAL_ORBIT_FIRST + k
        a, i = math.radians(angle), math.radians(inclination)
        lines.append((
            angle,
            Formula("=ROUND($B$2*COS(RADIANS(A%d)),3)" % row, round(radius * math.cos(a), 3)),
            Formula("=ROUND($B$2*SIN(RADIANS(A%d))*COS(RADIANS($B$3)),3)" % row,
                    round(radius * math.sin(a) * math.cos(i), 3)),
            Formula("=ROUND($B$2*SIN(RADIANS(A%d))*SIN(RADIANS($B$3)),3)" % row,
                    round(radius * math.sin(a) * math.sin(i), 3)),
            Formula("=ROUND($B$4+A%d/360*$B$5,6)" % row, round(day + angle / 360 * period, 6))))
        if k < len(TUTORIAL_BURNS):
            hour, state = TUTORIAL_BURNS[k]
            lines[-1] += (Formula("=ROUND($B$4+%g/24,6)" % hour, round(day + hour / 24, 6)), state)
    last = TUTORIAL_ORBIT_FIRST + TUTORIAL_ORBIT_ROWS - 1
    tops = max(v.result if isinstance(v, Formula) else v for line in lines for v in line[1:6] if not isinstance(v, str))
    sheet.put(7, 1, Formula("=0.001*MAX(B%d:G%d)" % (TUTORIAL_ORBIT_FIRST, last), round(0.001 * tops, 9)), "key")
    sheet.put(7, 2, "select this cell: it names the columns to plot; the value that it shows does not matter", "note")
    sheet.put_row(TUTORIAL_ORBIT_FIRST - 1, 1,
                  ("angle (deg)", "x (km)", "y (km)", "z (km)", "time (day)", "burn (day)", "state"), "head")
    for k, line in enumerate(lines):
        sheet.put_row(TUTORIAL_ORBIT_FIRST + k, 1, line, "input")
    sheet.active = (7, 1)
    return sheet


def tutorial():
    canted = "Thruster thr size 0.05 0.03 cells 1 1 R X 180 R Y 25 T 0 0 -0.1"
    return [
        tutorial_sheet("Model", "The model of the tutorial", "What you have typed at the end of its first part.",
                       TUTORIAL),
        tutorial_sheet("Start", "Type your model here", "The keyword, the directives and the database are there; the "
                       "rows of the model are yours: material in column B, specification in column C.", []),
        tutorial_sheet("Canted", "The thruster leans away from the dish", "One row is changed: the thruster's.",
                       tutorial_variant(4, None, canted, "R Y 25 is new")),
        tutorial_sheet("Shielded", "A plate between thruster and dish", "One row is new: the last one.",
                       TUTORIAL + [TUTORIAL_SHIELD]),
        tutorial_sheet("Titanium", "Another material for the dish", "One cell is changed: the dish's material.",
                       tutorial_variant(3, "titanium", None, "titanium in place of silver")),
        tutorial_orbit(),
    ]


# --- range plots -----------------------------------------------------------------------------------------------------

EARTH_GRAVITY = 398600.4418  # km3/s2
ORBIT_ROWS = 181
ORBIT_FIRST_ROW = 24
ORBIT_PERIOD = 0.75  # days
ORBIT_FIRST_DAY = 46100.25
ORBIT_SHAPE = (0.55, 40, 50, 300)  # eccentricity, inclination, node, perigee (deg)
# hour, S: thrust starts, E: it ends
ORBIT_EVENTS = [(0, "E"), (2, "S"), (3.5, "E"), (6, "S"), (9, "E"), (12, "S"), (15, "E"), (16, "S"), (17, "E")]
ORBIT_HEADS = ("x (km)", "y (km)", "z (km)", "time (day)", "event (day)", "state", "attitude (day)", "w", "x", "y", "z",
               "panel 1 (day)", "angle (deg)", "panel 2 (day)", "angle (deg)", "attitude (day)", "x", "y", "z", "w",
               "battery (day)", "charge (%)")


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return tuple(x / length for x in a)


def orbit_position(share):
    eccentricity, inclination, node, perigee = ORBIT_SHAPE
    inclination, node, perigee = (math.radians(angle) for angle in (inclination, node, perigee))
    axis = (EARTH_GRAVITY * (ORBIT_PERIOD * 86400 / (2 * math.pi)) ** 2) ** (1 / 3)
    mean = 2 * math.pi * share
    anomaly = mean
    for _ in range(30):
        anomaly -= (anomaly - eccentricity * math.sin(anomaly) - mean) / (1 - eccentricity * math.cos(anomaly))
    p = axis * (math.cos(anomaly) - eccentricity)
    q = axis * math.sqrt(1 - eccentricity ** 2) * math.sin(anomaly)
    along = p * math.cos(perigee) - q * math.sin(perigee)
    across = p * math.sin(perigee) + q * math.cos(perigee)
    return (along * math.cos(node) - across * math.cos(inclination) * math.sin(node),
            along * math.sin(node) + across * math.cos(inclination) * math.cos(node), across * math.sin(inclination))


def quaternion(x, y, z, before):
    """w, x, y, z of the rotation with these columns, on the side of the one before."""
    w = math.sqrt(max(0, 1 + x[0] + y[1] + z[2])) / 2
    parts = [math.sqrt(max(0, 1 + s)) / 2 for s in (x[0] - y[1] - z[2], y[1] - x[0] - z[2], z[2] - x[0] - y[1])]
    signs = (y[2] - z[1], z[0] - x[2], x[1] - y[0])
    turned = [w] + [math.copysign(part, sign) for part, sign in zip(parts, signs)]
    return turned if sum(a * b for a, b in zip(turned, before)) >= 0 else [-part for part in turned]


def orbit_lines():
    """The rows of the sheet: the third axis to the Earth, the second square to the Sun, panels turned to the Sun."""
    before = (1, 0, 0, 0)
    sun = unit((0.9, -0.4, -0.17))
    for k in range(ORBIT_ROWS):
        share = k / (ORBIT_ROWS - 1)
        day = round(ORBIT_FIRST_DAY + share * ORBIT_PERIOD, 6)
        position = orbit_position(share)
        nadir = unit(tuple(-x for x in position))
        second = unit(cross(nadir, sun))
        first = cross(second, nadir)
        before = quaternion(first, second, nadir, before)
        attitude = [round(part, 6) for part in before]
        angle = round(math.degrees(math.atan2(sum(a * b for a, b in zip(sun, first)),
                                              sum(a * b for a, b in zip(sun, nadir)))), 3)
        hour, state = ORBIT_EVENTS[k] if k < len(ORBIT_EVENTS) else (None, None)
        event = None if hour is None else round(ORBIT_FIRST_DAY + hour / 24, 6)
        charge = round(60 + 35 * math.cos(4 * math.pi * share) - 20 * share, 3)
        yield ([round(x, 3) for x in position] + [day, event, state, day] + attitude + [day, angle, day, -angle, day] +
               attitude[1:] + attitude[:1] + [day, charge])


def orbit_sheet():
    sheet = Sheet("Orbit")
    sheet.widths = {column: 13 for column in range(1, len(ORBIT_HEADS) + 1)}
    sheet.put(1, 1, "An orbit, to be plotted range by range", "title")
    sheet.put(2, 1, "Select one of the coloured cells: its formula names the ranges to plot, and words behind & change "
              "how. The value that it shows does not matter.", "note")
    lines = list(orbit_lines())
    first, last = ORBIT_FIRST_ROW, ORBIT_FIRST_ROW + len(lines) - 1

    def ranges(*columns):
        return "+".join("MAX(%s%d:%s%d)" % (a, first, b, last) for a, b in columns)

    def largest(*columns):
        tops = []
        for a, b in columns:
            values = [v for line in lines for v in line[ord(a) - 65:ord(b) - 64] if isinstance(v, (int, float))]
            tops.append(max(values))
        return tops

    orbit = ("A", "C"), ("D", "D"), ("E", "F"), ("G", "K"), ("L", "M")
    plots = [
        (1, "", [("A", "C")], "3 columns: the curve alone, each axis stretched to the same length"),
        (0.001, "", [("A", "D")], "4 columns: with the time; the scale makes thousands of kilometres"),
        (0.001, "", [("A", "F")], "6 columns: with events, S starts one and E ends it"),
        (0.001, "", [("A", "K")], "11 columns: with the attitude of the satellite"),
        (0.001, "", [("A", "M")], "13 columns: with the angle of the first panel"),
        (0.001, "", [("A", "O")], "15 columns: with the angle of the second panel"),
        (1, "valx", [*orbit, ("U", "V")], "valx: the charge of the battery, as bars along x"),
        (1, "valy", [*orbit, ("U", "V")], "valy: the same along y"),
        (1, "valz", [*orbit, ("U", "V")], "valz: the same along z"),
        (0.001, "ESA", [*orbit[:3], ("P", "T")], "ESA: the attitude as x, y, z, w"),
        (0.001, "moon", [("A", "O")], "moon: the body at the origin is the Moon"),
    ]
    for k, (scale, options, columns, remark) in enumerate(plots):
        text = ("=" if scale == 1 else "=%g*" % scale) + ranges(*columns)
        tops = largest(*columns)
        value = round(scale * tops[0] + sum(tops[1:]), 9)
        if options:
            text, value = text + '&"%s"' % options, "%.15g%s" % (value, options)
        sheet.put(4 + k, 1, Formula(text, value), "key")
        sheet.put(4 + k, 2, remark)
    sheet.active = (9, 1)
    sheet.put_row(ORBIT_FIRST_ROW - 1, 1, ORBIT_HEADS, "head")
    for k, line in enumerate(lines):
        sheet.put_row(first + k, 1, line, "input")
    return sheet


SURFACE_CELLS = (14, 10)
SURFACE_FIRST_ROW = 10


def surface_point(u, v):
    x, y = 3 * (u - 0.5), 2 * (v - 0.5)
    return [round(c, 4) for c in (x, y, 0.35 * (x * x - y * y) + 0.1 * math.sin(6 * u))]


def surface_sheet():
    """Cells of a surface: their outlines, and a value at each centre that colours the cell."""
    sheet = Sheet("Surface")
    sheet.widths = {column: 13 for column in range(1, 10)}
    along, across = SURFACE_CELLS
    centres, outlines = [], []
    for i in range(along):
        for j in range(across):
            centre = surface_point((i + 0.5) / along, (j + 0.5) / across)
            centres.append(centre + [round(math.hypot(centre[0], centre[1]), 4)])
            corners = [surface_point((i + a) / along, (j + b) / across) for a, b in ((0, 0), (1, 0), (1, 1), (0, 1))]
            outlines += corners + corners[:1] + [[None] * 3]
    sheet.put(1, 1, "A surface in cells, to be plotted with PENUP", "title")
    sheet.put(2, 1, "The points carry the values, the outlines are the cells: five corners, the first one again, and an "
              "empty row. The columns of events stay empty.", "note")
    first, last = SURFACE_FIRST_ROW, SURFACE_FIRST_ROW + len(centres) - 1
    end = SURFACE_FIRST_ROW + len(outlines) - 1
    text = "=MAX(A%d:C%d)+MAX(D%d:D%d)+MAX(E%d:F%d)+MAX(G%d:I%d)" % (first, last, first, last, first, last, first, end)
    tops = (max(max(c[:3]) for c in centres), max(c[3] for c in centres), 0,
            max(max(o) for o in outlines if o[0] is not None))
    for k, (options, remark) in enumerate((("PENUP", "PENUP: cells, coloured by the value"),
                                           ("PENUP valx", "PENUP valx: cells, coloured by x"))):
        sheet.put(4 + k, 1, Formula('%s&"%s"' % (text, options), "%.15g%s" % (round(sum(tops), 9), options)), "key")
        sheet.put(4 + k, 2, remark)
    sheet.put(6, 1, "=MAX(A%d:C%d) \"PENUP\"" % (first, last), "key")
    sheet.put(7, 1, "Dots, coloured by z. This cell is a text: there options may stand behind a blank.", "note")
    sheet.active = (4, 1)
    sheet.put_row(SURFACE_FIRST_ROW - 1, 1, ("x", "y", "z", "value", "", "", "corner x", "corner y", "corner z"), "head")
    for k, centre in enumerate(centres):
        sheet.put_row(first + k, 1, centre, "input")
    for k, corner in enumerate(outlines):
        sheet.put_row(first + k, 7, corner, "input")
    return sheet


# --- broken workbooks ----------------------------------------------------------------------------------------------

SMALL = [
    ("HT1350-cosine", "Thruster thr size 0.05 0.1 cells 1 1", ""),
    ("aluminium", "Plate_1 rect size 1 1 cells 4 4 R X 180 T 0 0 2", "faces the thruster"),
    ("aluminium", "Plate_2 rect size 2 2 cells 4 4 R X 180 T 0 0 3", "behind plate 1"),
]


def small(model=SMALL, keyword=True, omit=(), database=True, database_column=2):
    sheet = Sheet("Model")
    set_widths(sheet)
    sheet.put(1, 1, "A broken workbook, for trying how the fault is told", "title")
    put_model(sheet, 4, 2, "Broken", "T 0 0 0 Log 0", model)
    row = 4 + len(model) + GAP
    if not keyword:
        sheet.put(4, 2, "Model data", "key")
    if database:
        put_database(sheet, row, database_column, "", ["HT1350-cosine"], ["aluminium"], omit)
    else:
        sheet.put(row, database_column, "DatabaseOrvValis", "key")
    return sheet


def replaced(row, specification):
    model = list(SMALL)
    model[row] = (model[row][0], specification, "the fault")
    return model


def text_for_numbers():
    sheet = small(replaced(2, "Plate_2 rect size wide tall cells many few T up 0 1"))
    for position, (value, style) in list(sheet.cells.items()):
        if value == BEAM_CURRENT:
            sheet.put(*position, "about four", style)
    return sheet


def write_zip_bomb(path, unpacked):
    """A sheet whose XML is nearly nothing but blanks: 200 MB from a file of 200 kB."""
    parts = xlsx_parts([small()])
    name = "xl/worksheets/sheet1.xml"
    head, tail = parts[name].split("<sheetData>")
    with zipfile.ZipFile(path, "w") as archive:
        for part, text in parts.items():
            if part != name:
                archive.writestr(entry(part), text.encode("utf-8"))
        with archive.open(entry(name), "w") as sheet:
            sheet.write(head.encode("utf-8") + b"<sheetData>")
            block = b" " * (1 << 20)
            for _ in range(unpacked // len(block)):
                sheet.write(block)
            sheet.write(tail.encode("utf-8"))


def write_truncated(path):
    whole = io.BytesIO()
    write_archive(whole, xlsx_parts([small()]))
    with open(path, "wb") as file:
        file.write(whole.getvalue()[: len(whole.getvalue()) * 6 // 10])


def write_broken(folder):
    books = {
        "missing_keyword": small(keyword=False),
        "missing_tables": small(omit=(6, 7, 8, 10)),
        "empty_database": small(database=False),
        "row_without_numbers": small(replaced(2, "Plate_2 rect size cells")),
        "unknown_type": small(replaced(2, "Box_1 cuboid size 1 1 1 cells 4 4 T 0 0 3")),
        "text_for_numbers": text_for_numbers(),
        "no_thruster": small(SMALL[1:]),
        "columns_300": small(database_column=289),
    }
    for name, sheet in books.items():
        write_xlsx(os.path.join(folder, name + ".xlsx"), [sheet])
    write_zip_bomb(os.path.join(folder, "zip_bomb.xlsx"), 200 << 20)
    write_truncated(os.path.join(folder, "truncated.xlsx"))


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    os.makedirs(os.path.join(folder, "broken"), exist_ok=True)
    books = (("telecom_satellite", telecom()), ("primitive_gallery", gallery()),
             ("range_plots", [orbit_sheet(), surface_sheet()]), ("tutorial", tutorial()))
    for name, book in books:
        write_xlsx(os.path.join(folder, name + ".xlsx"), book)
        write_ods(os.path.join(folder, name + ".ods"), book)
    write_broken(os.path.join(folder, "broken"))


if __name__ == "__main__":
    main()
