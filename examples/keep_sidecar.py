#!/usr/bin/env python3
"""keep_sidecar.py FILE KEYWORD LANGUAGE TITLE: keeps a photograph's changes in its side-car file.

Reads the photograph, merges photo.jpg.xmp if there is one, adds a keyword and a title in one language, and writes the side-car
back. The photograph itself does not change.
"""
import datetime
import sys

import lxbridge


def main() -> None:
    path, keyword, language, title = sys.argv[1:]
    photo = lxbridge.open(path)
    photo.merge_sidecar()
    if keyword not in photo["dc:subject"]:
        photo["dc:subject"].append(keyword)
    photo["dc:title"][language] = title
    photo["xmp:MetadataDate"] = datetime.datetime.now().astimezone()
    print(f"{photo.save_sidecar(overwrite=True)}: {len(photo['dc:subject'])} keywords")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__.splitlines()[0])
    try:
        main()
    except lxbridge.Error as error:
        sys.exit(f"keep_sidecar.py: {error}")
