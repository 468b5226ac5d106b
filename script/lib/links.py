#!/usr/bin/env python3
"""Checks the links of a site: links.py FOLDER

Each link of a page leads to a file of the site and to a place that is there, or to this machine; what a page loads is a
file of the site. Prints what is wrong; the exit status is then 1.
"""
import html.parser
import pathlib
import re
import sys
import urllib.parse

THIS_MACHINE = re.compile(r"https?://(127\.0\.0\.1|localhost)(:\d+)?(/|$)")


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.ids, self.links, self.loads = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id":
                self.ids.add(value)
            elif name == "href" and tag == "a":
                self.links.append(value)
            elif name in ("href", "src", "srcset", "action", "data"):
                self.loads.append(value)
            elif name == "style" or name.startswith("on") or tag == "script":
                self.loads.append(f"<{tag} {name}>")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    pages = {path.name: Page(path.read_text(encoding="utf-8")) for path in sorted(folder.glob("*.html"))}
    names = {path.name for path in folder.iterdir()}
    wrong = [f"{name}: loads {load}" for name, page in pages.items() for load in page.loads if load not in names]
    reached, count = {"index.html"}, 0
    for name, page in pages.items():
        for link in page.links:
            count += 1
            target, _, place = link.partition("#")
            target = target or name
            reached.add(target)
            known = target in pages and (not place or urllib.parse.unquote(place) in pages[target].ids)
            if not known and not THIS_MACHINE.match(link):
                wrong.append(f"{name}: {link} leads nowhere")
    wrong += [f"{name}: no page leads to it" for name in pages if name not in reached]
    print("\n".join(wrong) if wrong else f"{len(pages)} pages, {count} links: all lead to where something is.")
    return 1 if wrong or not pages or not count else 0


if __name__ == "__main__":
    sys.exit(main())
