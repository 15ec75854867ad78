#!/usr/bin/env python3
"""The guide as one page: every heading can be linked to, every link within it leads somewhere, nothing is loaded.

  guide_html.py ROOT
"""
import html.parser
import os
import subprocess
import sys
import tempfile


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.ids, self.links, self.loaded, self.headings = set(), [], [], 0

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        if "id" in values:
            self.ids.add(values["id"])
        self.headings += tag in ("h2", "h3") and "id" in values
        if tag == "a":
            self.links.append(values.get("href", ""))
        self.loaded += [values[name] for name in ("src", "srcset") if name in values]
        self.loaded += [values["href"]] if tag == "link" else []


def main(root):
    with tempfile.TemporaryDirectory() as folder:
        out = os.path.join(folder, "guide.html")
        done = subprocess.run([os.path.join(root, "tools", "guide-html"), out], capture_output=True, text=True, check=False)
        if done.returncode == 77:
            print(done.stdout)
            return 77
        assert done.returncode == 0, done.stderr
        with open(out, encoding="utf-8") as file:
            text = file.read()
    page = Page()
    page.feed(text)
    with open(os.path.join(root, "docs", "user-guide.md"), encoding="utf-8") as file:
        headings = sum(line.startswith(("## ", "### ")) for line in file)
    assert page.headings == headings > 10, (page.headings, headings)
    broken = [link for link in page.links if link.startswith("#") and link[1:] not in page.ids]
    assert not broken, broken
    assert len(page.links) >= headings, "the contents are missing"
    assert all(source.startswith("data:") for source in page.loaded), page.loaded
    assert "<!-- " not in text, "what the program reads is left in it"
    print(f"{headings} headings, {len(page.links)} links, {len(page.loaded)} pictures within the page")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
