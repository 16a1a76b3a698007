#!/usr/bin/env python3
"""Model generator: reads the model descriptions and writes the C++ of the model.

    odxgen.py --model MODEL_DIR --out OUT_DIR      write what changed
    odxgen.py --model MODEL_DIR --list             print the paths it would write

Only the Python standard library is used.
"""

import argparse
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from descriptions import DescriptionError, Model  # noqa: E402
import emit_cpp  # noqa: E402
import emit_tests  # noqa: E402
import emit_xml  # noqa: E402


def generate(model_dir):
    model = Model(model_dir)
    files = emit_cpp.emit_all(model)
    files.update(emit_tests.emit_tests(model))
    files.update(emit_xml.emit_xml(model))
    return model, files


def write_changed(out_dir, files):
    """Writes files whose text differs, so that unchanged outputs are not rebuilt."""
    out = pathlib.Path(out_dir)
    for relative, text in files.items():
        path = out / relative
        if path.exists() and path.read_text() == text:
            continue
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--model", required=True, help="folder of the model descriptions")
    parser.add_argument("--out", help="folder to write the generated sources into")
    parser.add_argument("--list", action="store_true", help="print the generated paths")
    parser.add_argument("--stamp", help="file to touch after a successful run")
    args = parser.parse_args(argv)
    try:
        _, files = generate(args.model)
    except DescriptionError as error:
        print(f"odxgen: {error}", file=sys.stderr)
        return 1
    if args.list:
        print(";".join(sorted(files)))
        return 0
    if not args.out:
        parser.error("--out or --list is required")
    write_changed(args.out, files)
    if args.stamp:
        pathlib.Path(args.stamp).touch()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
