#!/usr/bin/env python3
"""links.py PAGE...: follows the links of each first page, Markdown or HTML. Fails for a link that leads nowhere, and for a
page in docs/ beside the first that none leads to."""
import os
import re
import sys
import urllib.parse

LINK = {".md": r"\]\(([^)\s]+)\)", ".html": r"<(?:a|link|script|img)\b[^>]*?(?:href|src)=\"([^\"]+)\""}


def links(page):
    with open(page, encoding="utf-8") as text:
        for link in re.findall(LINK[os.path.splitext(page)[1]], text.read()):
            path = urllib.parse.unquote(re.sub(r"[#?].*", "", link))
            if path and not re.match(r"[a-z]+:", path):
                yield os.path.normpath(os.path.join(os.path.dirname(page), path))


def main(first_pages):
    bad = 0
    for first in first_pages:
        seen, todo = set(), [os.path.normpath(first)]
        while todo:
            page = todo.pop()
            if page in seen or os.path.splitext(page)[1] not in LINK:
                continue
            seen.add(page)
            for link in links(page):
                if os.path.exists(link):
                    todo.append(link)
                else:
                    print(f"{page}: no {link}")
                    bad += 1
        if first.endswith(".md"):
            for folder, _, files in os.walk(os.path.join(os.path.dirname(first), "docs")):
                for file in sorted(files):
                    page = os.path.join(folder, file)
                    if file.endswith(".md") and os.path.normpath(page) not in seen:
                        print(f"{page}: no link leads here")
                        bad += 1
        print(f"{first}: {len(seen)} pages")
    return bad != 0


sys.exit(main(sys.argv[1:]))
