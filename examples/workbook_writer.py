"""Writes one description of a workbook as .xlsx and as .ods.

Standard library only. The files carry fixed time stamps, so the same description gives the same bytes (as long as the
compression library does).
"""

import re
import zipfile
from xml.sax.saxutils import escape

STAMP = (2024, 1, 1, 0, 0, 0)

# name: (bold, italic, font size, font colour, fill, wrap, alignment)
STYLES = {
    "text": (False, False, 10, "000000", None, False, "left"),
    "title": (True, False, 14, "1F3864", None, False, "left"),
    "note": (False, True, 9, "595959", None, False, "left"),
    "index": (False, False, 9, "595959", None, False, "center"),
    "head": (True, False, 9, "FFFFFF", "44546A", True, "left"),
    "head_line": (True, False, 9, "FFFFFF", "44546A", False, "left"),
    "band": (True, False, 11, "1F3864", "D9E2F3", False, "left"),
    "key": (True, False, 10, "7F3F00", "FFE699", False, "left"),
    "input": (False, False, 10, "000000", "F2F2F2", False, "left"),
    "thruster": (True, False, 10, "833C0B", "FBE5D6", False, "left"),
}
STYLE_NAMES = list(STYLES)


def column_letters(column):
    letters = ""
    while column:
        column, rest = divmod(column - 1, 26)
        letters = chr(65 + rest) + letters
    return letters


def cell_name(row, column):
    return column_letters(column) + str(row)


class Formula:
    """A formula in A1 notation with commas, and the result that is stored beside it."""

    def __init__(self, text, result):
        self.text = text
        self.result = result


class Sheet:
    def __init__(self, name, active=(1, 1)):
        self.name = name
        self.active = active
        self.cells = {}  # (row, column): (value, style)
        self.widths = {}  # column: width in characters
        self.heights = {}  # row: height in points

    def put(self, row, column, value, style="text"):
        """A number, a text, a Formula, or None for an empty cell that is only coloured."""
        self.cells[row, column] = (value, style)

    def put_row(self, row, column, values, style="text"):
        for k, value in enumerate(values):
            if value is not None:
                self.put(row, column + k, value, style)

    def rows(self):
        by_row = {}
        for (row, column), cell in sorted(self.cells.items()):
            by_row.setdefault(row, []).append((column, *cell))
        return sorted(by_row.items())

    def last_column(self):
        return max((column for _, column in self.cells), default=1)


def value_of(value):
    return value.result if isinstance(value, Formula) else value


def number_text(value):
    return repr(value)


# --- xlsx ----------------------------------------------------------------------------------------------------------

XML = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
REL = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"


def xlsx_styles():
    fonts, fills, formats = [], ['<fill><patternFill patternType="none"/></fill>',
                                 '<fill><patternFill patternType="gray125"/></fill>'], []
    for name in STYLE_NAMES:
        bold, italic, size, colour, fill, wrap, alignment = STYLES[name]
        fonts.append("<font>%s%s<sz val=\"%d\"/><color rgb=\"FF%s\"/><name val=\"Arial\"/></font>"
                     % ("<b/>" if bold else "", "<i/>" if italic else "", size, colour))
        fill_id = 0
        if fill:
            fill_id = len(fills)
            fills.append('<fill><patternFill patternType="solid"><fgColor rgb="FF%s"/></patternFill></fill>' % fill)
        wrapping = ' wrapText="1"' if wrap else ""
        formats.append('<xf numFmtId="0" fontId="%d" fillId="%d" borderId="0" xfId="0" applyFont="1" applyFill="1" '
                       'applyAlignment="1"><alignment horizontal="%s" vertical="%s"%s/></xf>'
                       % (len(fonts) - 1, fill_id, alignment, "top" if wrap else "center", wrapping))
    return (XML + '<styleSheet xmlns="%s"><fonts count="%d">%s</fonts><fills count="%d">%s</fills>'
            '<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>'
            '<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>'
            '<cellXfs count="%d">%s</cellXfs></styleSheet>'
            % (MAIN, len(fonts), "".join(fonts), len(fills), "".join(fills), len(formats), "".join(formats)))


def xlsx_sheet(sheet, strings, selected):
    columns = "".join('<col min="%d" max="%d" width="%s" customWidth="1"/>' % (c, c, w)
                      for c, w in sorted(sheet.widths.items()))
    lines = []
    for row, cells in sheet.rows():
        height = ' ht="%d" customHeight="1"' % sheet.heights[row] if row in sheet.heights else ""
        parts = []
        for column, value, style in cells:
            head = '<c r="%s" s="%d"' % (cell_name(row, column), STYLE_NAMES.index(style))
            result = value_of(value)
            if result is None:
                parts.append(head + "/>")
                continue
            formula = "<f>%s</f>" % escape(value.text[1:]) if isinstance(value, Formula) else ""
            if isinstance(result, str) and formula:
                parts.append('%s t="str">%s<v>%s</v></c>' % (head, formula, escape(result)))
            elif isinstance(result, str):
                index = strings.setdefault(result, len(strings))
                parts.append('%s t="s"><v>%d</v></c>' % (head, index))
            else:
                parts.append("%s>%s<v>%s</v></c>" % (head, formula, number_text(result)))
        lines.append('<row r="%d"%s>%s</row>' % (row, height, "".join(parts)))
    active = cell_name(*sheet.active)
    return (XML + '<worksheet xmlns="%s"><sheetPr><pageSetUpPr fitToPage="1"/></sheetPr>'
            '<sheetViews><sheetView workbookViewId="0"%s><selection activeCell="%s" sqref="%s"/></sheetView>'
            '</sheetViews><sheetFormatPr defaultRowHeight="13.5"/>%s<sheetData>%s</sheetData>'
            '<pageSetup paperSize="8" orientation="landscape" fitToWidth="1" fitToHeight="0"/></worksheet>'
            % (MAIN, ' tabSelected="1"' if selected else "", active, active,
               "<cols>%s</cols>" % columns if columns else "", "".join(lines)))


def xlsx_parts(sheets):
    """The parts of the package by name, in the order in which they are stored."""
    strings = {}
    bodies = [xlsx_sheet(sheet, strings, k == 0) for k, sheet in enumerate(sheets)]
    kinds = "application/vnd.openxmlformats-officedocument.spreadsheetml."
    numbers = range(1, len(sheets) + 1)
    overrides = "".join('<Override PartName="/xl/worksheets/sheet%d.xml" ContentType="%sworksheet+xml"/>' % (k, kinds)
                        for k in numbers)
    parts = {
        "[Content_Types].xml":
            XML + '<Types xmlns="%s/content-types">'
            '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            '<Override PartName="/xl/workbook.xml" ContentType="%ssheet.main+xml"/>%s'
            '<Override PartName="/xl/styles.xml" ContentType="%sstyles+xml"/>'
            '<Override PartName="/xl/sharedStrings.xml" ContentType="%ssharedStrings+xml"/></Types>'
            % (PACKAGE, kinds, overrides, kinds, kinds),
        "_rels/.rels":
            XML + '<Relationships xmlns="%s/relationships"><Relationship Id="rId1" Type="%s/officeDocument" '
            'Target="xl/workbook.xml"/></Relationships>' % (PACKAGE, REL),
        "xl/workbook.xml":
            XML + '<workbook xmlns="%s" xmlns:r="%s"><bookViews><workbookView activeTab="0" windowWidth="28800" '
            'windowHeight="15000"/></bookViews><sheets>%s</sheets></workbook>'
            % (MAIN, REL, "".join('<sheet name="%s" sheetId="%d" r:id="rId%d"/>' % (escape(s.name), k, k)
                                  for k, s in zip(numbers, sheets))),
        "xl/_rels/workbook.xml.rels":
            XML + '<Relationships xmlns="%s/relationships">%s'
            '<Relationship Id="rId%d" Type="%s/styles" Target="styles.xml"/>'
            '<Relationship Id="rId%d" Type="%s/sharedStrings" Target="sharedStrings.xml"/></Relationships>'
            % (PACKAGE, "".join('<Relationship Id="rId%d" Type="%s/worksheet" Target="worksheets/sheet%d.xml"/>'
                                % (k, REL, k) for k in numbers), len(sheets) + 1, REL, len(sheets) + 2, REL),
        "xl/styles.xml": xlsx_styles(),
        "xl/sharedStrings.xml":
            XML + '<sst xmlns="%s" count="%d" uniqueCount="%d">%s</sst>'
            % (MAIN, len(strings), len(strings),
               "".join('<si><t xml:space="preserve">%s</t></si>' % escape(s) for s in strings)),
    }
    for k, body in zip(numbers, bodies):
        parts["xl/worksheets/sheet%d.xml" % k] = body
    return parts


# --- ods -----------------------------------------------------------------------------------------------------------

ODF = "urn:oasis:names:tc:opendocument:xmlns:"
ODS_SPACES = "".join(' xmlns:%s="%s%s:1.0"' % (short, ODF, name) for short, name in (
    ("office", "office"), ("style", "style"), ("text", "text"), ("table", "table"), ("fo", "xsl-fo-compatible"),
    ("config", "config"), ("svg", "svg-compatible")))
ODS_SPACES += ' xmlns:of="%sof:1.2"' % ODF
ODS_TYPE = "application/vnd.oasis.opendocument.spreadsheet"
REFERENCE = re.compile(r"(?:(\w+)!)?(\$?[A-Z]{1,3}\$?\d+)(?::(\$?[A-Z]{1,3}\$?\d+))?(?![\w(])")


def open_formula(text):
    """A formula in A1 notation as OpenFormula; texts in quotes stay as they are."""

    def reference(match):
        sheet, first, last = match.groups()
        before = "$" + sheet if sheet else ""
        return "[%s.%s%s]" % (before, first, ":." + last if last else "")

    parts = re.split(r'("[^"]*")', text)
    parts[::2] = [REFERENCE.sub(reference, part).replace(",", ";") for part in parts[::2]]
    return "of:" + "".join(parts)


def ods_text(text):
    """Several blanks in a row, and blanks at the ends, have an element of their own."""
    out, last = [], 0
    for match in re.finditer(" +", text):
        count = len(match.group())
        inside = match.start() > 0 and match.end() < len(text)
        out.append(escape(text[last:match.start()]) + (" " if inside else ""))
        if count > inside:
            out.append('<text:s text:c="%d"/>' % (count - inside))
        last = match.end()
    return "".join(out) + escape(text[last:])


def ods_automatic_styles(sheets):
    out, known = [], set()
    for sheet in sheets:
        for width in [10] + list(sheet.widths.values()):
            if ("co", width) not in known:
                known.add(("co", width))
                out.append('<style:style style:name="co%s" style:family="table-column"><style:table-column-properties '
                           'style:column-width="%.3fcm"/></style:style>' % (str(width).replace(".", "_"), width * 0.2))
        for height in sheet.heights.values():
            if ("ro", height) not in known:
                known.add(("ro", height))
                out.append('<style:style style:name="ro%d" style:family="table-row"><style:table-row-properties '
                           'style:row-height="%.3fcm" style:use-optimal-row-height="false"/></style:style>'
                           % (height, height * 2.54 / 72))
    out.append('<style:style style:name="ta" style:family="table" style:master-page-name="Default">'
               '<style:table-properties table:display="true"/></style:style>')
    for name in STYLE_NAMES:
        bold, italic, size, colour, fill, wrap, alignment = STYLES[name]
        out.append('<style:style style:name="%s" style:family="table-cell"><style:table-cell-properties '
                   'style:vertical-align="%s"%s%s/><style:paragraph-properties fo:text-align="%s"/>'
                   '<style:text-properties style:font-name="Arial" fo:font-size="%dpt" fo:color="#%s"%s%s/>'
                   '</style:style>'
                   % (name, "top" if wrap else "middle", ' fo:background-color="#%s"' % fill if fill else "",
                      ' fo:wrap-option="wrap"' if wrap else "", "start" if alignment == "left" else alignment, size,
                      colour, ' fo:font-weight="bold"' if bold else "", ' fo:font-style="italic"' if italic else ""))
    return "".join(out)


def ods_cell(value, style):
    if value is None:
        return '<table:table-cell table:style-name="%s"/>' % style
    formula = ' table:formula="%s"' % escape(open_formula(value.text), {'"': "&quot;"}) \
        if isinstance(value, Formula) else ""
    result = value_of(value)
    head = '<table:table-cell table:style-name="%s"%s' % (style, formula)
    if isinstance(result, str):
        return '%s office:value-type="string"><text:p>%s</text:p></table:table-cell>' % (head, ods_text(result))
    return ('%s office:value-type="float" office:value="%s"><text:p>%s</text:p></table:table-cell>'
            % (head, number_text(result), "%.10g" % result))


def ods_table(sheet):
    columns = []
    for column in range(1, max([sheet.last_column()] + list(sheet.widths)) + 1):
        columns.append('<table:table-column table:style-name="co%s"/>'
                       % str(sheet.widths.get(column, 10)).replace(".", "_"))
    rows, last_row = [], 0
    for row, cells in sheet.rows():
        if row - last_row > 1:
            rows.append('<table:table-row table:number-rows-repeated="%d"><table:table-cell/></table:table-row>'
                        % (row - last_row - 1))
        parts, last_column = [], 0
        for column, value, style in cells:
            if column - last_column > 1:
                parts.append('<table:table-cell table:number-columns-repeated="%d"/>' % (column - last_column - 1))
            parts.append(ods_cell(value, style))
            last_column = column
        style = ' table:style-name="ro%d"' % sheet.heights[row] if row in sheet.heights else ""
        rows.append("<table:table-row%s>%s</table:table-row>" % (style, "".join(parts)))
        last_row = row
    return ('<table:table table:name="%s" table:style-name="ta">%s%s</table:table>'
            % (escape(sheet.name), "".join(columns), "".join(rows)))


def ods_settings(sheets):
    def item(name, kind, value):
        return '<config:config-item config:name="%s" config:type="%s">%s</config:config-item>' % (name, kind, value)

    tables = "".join('<config:config-item-map-entry config:name="%s">%s%s</config:config-item-map-entry>'
                     % (escape(s.name), item("CursorPositionX", "int", s.active[1] - 1),
                        item("CursorPositionY", "int", s.active[0] - 1)) for s in sheets)
    return (XML + '<office:document-settings%s office:version="1.2"><office:settings>'
            '<config:config-item-set config:name="ooo:view-settings"><config:config-item-map-indexed '
            'config:name="Views"><config:config-item-map-entry>%s<config:config-item-map-named config:name="Tables">%s'
            '</config:config-item-map-named>%s</config:config-item-map-entry></config:config-item-map-indexed>'
            '</config:config-item-set></office:settings></office:document-settings>'
            % (ODS_SPACES + ' xmlns:ooo="http://openoffice.org/2004/office"',
               item("ViewId", "string", "view1"), tables, item("ActiveTable", "string", escape(sheets[0].name))))


def ods_parts(sheets):
    version = ' office:version="1.2"'
    fonts = ('<office:font-face-decls><style:font-face style:name="Arial" svg:font-family="Arial"/>'
             '</office:font-face-decls>')
    manifest = ODF + "manifest:1.0"
    entries = "".join('<manifest:file-entry manifest:full-path="%s" manifest:media-type="text/xml"/>' % name
                      for name in ("content.xml", "styles.xml", "settings.xml"))
    return {
        "mimetype": ODS_TYPE,
        "content.xml":
            XML + "<office:document-content%s%s>%s<office:automatic-styles>%s</office:automatic-styles><office:body>"
            "<office:spreadsheet>%s</office:spreadsheet></office:body></office:document-content>"
            % (ODS_SPACES, version, fonts, ods_automatic_styles(sheets), "".join(ods_table(s) for s in sheets)),
        "styles.xml":
            XML + '<office:document-styles%s%s>%s<office:styles><style:default-style style:family="table-cell">'
            '<style:text-properties style:font-name="Arial" fo:font-size="10pt"/></style:default-style>'
            '</office:styles><office:automatic-styles><style:page-layout style:name="page">'
            '<style:page-layout-properties fo:page-width="42cm" fo:page-height="29.7cm" '
            'style:print-orientation="landscape" style:scale-to-X="1"/></style:page-layout>'
            '</office:automatic-styles><office:master-styles><style:master-page style:name="Default" '
            'style:page-layout-name="page"/></office:master-styles></office:document-styles>'
            % (ODS_SPACES, version, fonts),
        "settings.xml": ods_settings(sheets),
        "META-INF/manifest.xml":
            XML + '<manifest:manifest xmlns:manifest="%s" manifest:version="1.2">'
            '<manifest:file-entry manifest:full-path="/" manifest:version="1.2" manifest:media-type="%s"/>%s'
            "</manifest:manifest>" % (manifest, ODS_TYPE, entries),
    }


# --- the archive ---------------------------------------------------------------------------------------------------


def entry(name, stored=False):
    info = zipfile.ZipInfo(name, STAMP)
    info.compress_type = zipfile.ZIP_STORED if stored else zipfile.ZIP_DEFLATED
    info.create_system = 3
    info.external_attr = 0o644 << 16
    return info


def write_archive(path, parts):
    with zipfile.ZipFile(path, "w") as archive:
        for name, text in parts.items():
            archive.writestr(entry(name, name == "mimetype"), text.encode("utf-8"))


def write_xlsx(path, sheets):
    write_archive(path, xlsx_parts(sheets))


def write_ods(path, sheets):
    write_archive(path, ods_parts(sheets))
