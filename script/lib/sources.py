"""What the checks written in Python share: their arguments, and the files they read."""
import argparse
import pathlib
import re
import subprocess
import sys

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SUFFIXES = (".h", ".cc", ".c")
COMMENTS = re.compile(r'/\*.*?\*/|//[^\n]*|("(?:\\.|[^"\\\n])*")', re.DOTALL)


def named_files(doc, default):
    """The files named on the command line. --help prints `doc`, an unknown option exits with 2."""
    parser = argparse.ArgumentParser(description=doc, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("file", nargs="*", help=f"{default} when none is given")
    return parser.parse_args().file


def arguments(doc):
    """The files named on the command line, or all tracked ones."""
    listed = named_files(doc, "all tracked files") or subprocess.run(
        ["git", "ls-files"], cwd=ROOT, capture_output=True, text=True, check=True).stdout.split("\n")
    return [path for path in listed if (ROOT / path).is_file()]


def without_comments(text):
    """Replaces comments by spaces and keeps strings and all line breaks."""
    return COMMENTS.sub(lambda match: match.group(1) or "\n" * match.group(0).count("\n"), text)
