"""TYP texts as plain values, so that two of them can be compared whatever their layout."""

import re

FONTS = {"normal": "normal", "normalfont": "normal", "small": "small", "smallfont": "small", "large": "large",
         "largefont": "large", "nolabel": "nolabel", "nolabel (invisible)": "nolabel", "default": "default"}


def type_of(text):
    number = int(text, 16)
    return (number >> 8, number & 0xFF) if number > 0xFF else (number, 0)


def colour_of(text, tail):
    """'none', or '#RRGGBB' and a transparency of 0 to 15."""
    if text.lower() == "none":
        return "none"
    value = text.upper()
    alpha = re.search(r"alpha=(\d+)", tail)
    transparency = int(alpha.group(1)) if alpha else (255 - int(value[7:9], 16)) // 17 if len(value) > 7 else 0
    return (value[:7], transparency)


def read_xpm(lines, at):
    """The colours in their order and the rows as indexes into them."""
    width, height, count, size = map(int, re.search(r'"(.*)"', lines[at]).group(1).split())
    colours, names, rows = [], [], []
    for line in lines[at + 1:at + 1 + count]:
        name, value, tail = re.match(r'"(.{%d})\s+c\s+([^"\s]+)\s*"(.*)' % max(size, 1), line).groups()
        names.append(name)
        colours.append(colour_of(value, tail))
    for line in lines[at + 1 + count:at + 1 + count + height]:
        row = line.strip().strip('"')
        rows.append([names.index(row[i:i + size]) for i in range(0, size * width, size)])
    return colours, rows


def drawing_of(colours, rows, kind):
    """What is seen by day and by night; solid drawings are their colours."""
    if not rows:
        return {"solid": colours}
    if kind == "_point" or len(colours) <= 2:
        picture = [[colours[index] for index in row] for row in rows]
        return {"day": picture, "night": picture}
    return {"day": [[colours[index] for index in row] for row in rows],
            "night": [[colours[index + 2] for index in row] for row in rows]}


def read_definition(kind, lines):
    definition = {"labels": [], "font": "default", "orientation": "N"}
    for at, line in enumerate(lines):
        key, _, value = line.partition("=")
        key, value = key.strip().lower(), value.strip()
        if key == "type":
            definition["type"] = type_of(value)
        elif key == "subtype":
            definition["type"] = (definition["type"][0], int(value, 16))
        elif re.fullmatch(r"string\d*", key):
            language, _, text = value.partition(",") if value.lower().startswith("0x") else ("0", "", value)
            if text.strip():
                definition["labels"].append((int(language, 16), text.strip()))
        elif key == "fontstyle":
            definition["font"] = FONTS[value.lower()]
        elif key.startswith(("daycustomcolor", "nightcustomcolor")):
            definition[line[:3].lower() + " label"] = line[-6:].upper()
        elif key in ("linewidth", "borderwidth"):
            definition[key] = int(value)
        elif key == "useorientation":
            definition["orientation"] = value.upper()
        elif key in ("xpm", "dayxpm", "nightxpm"):
            definition["night image" if key[0] == "n" else "image"] = drawing_of(*read_xpm(lines, at), kind)
    solid = definition.get("image", {}).get("solid")
    # A border needs a colour, and a line with a bitmap has no width of its own.
    if not solid or len(solid) == 1 or definition.get("borderwidth") == 0:
        definition.pop("borderwidth", None)
    if not solid:
        definition.pop("linewidth", None)
    return definition


def read_typ_text(text):
    """The definitions of each kind by type, and the types of each level of the draw order."""
    found = {"_polygon": {}, "_line": {}, "_point": {}}
    levels = {}
    section, lines = None, []
    for line in (line.strip() for line in text.lstrip("\ufeff").splitlines()):
        if line.startswith(";") or not line:
            continue
        if line.lower() == "[end]":
            if section in found:
                definition = read_definition(section, lines)
                found[section].setdefault(definition.pop("type"), []).append(definition)
            section = None
        elif line.startswith("["):
            section, lines = line.strip("[]"), []
        elif section and section.lower() == "_draworder":
            type_text, level = line.partition("=")[2].split(",")
            levels.setdefault(int(level), set()).add(type_of(type_text))
        else:
            lines.append(line)
    return found, [levels[level] for level in sorted(levels)]
