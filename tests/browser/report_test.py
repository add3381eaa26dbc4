#!/usr/bin/env python3
"""Looks at the pages of `tovi report` in a browser: report_test.py TOVI CARDS [--screenshots FOLDER]

Exits with 77 where there is no browser, which makes ctest call the test skipped.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

import chromium

NAMED = ("rich", "findings", "garbage", "garbage-everywhere", "hostile-labels", "linear", "card-c-auth")
KINDS = ("privateKeys", "publicKeys", "trustedPublicKeys", "secretKeys", "certificates", "trustedCertificates",
         "usefulCertificates", "dataObjects", "containers", "authObjects")
WIDTHS = (1280, 400)
SCHEMES = ("light", "dark")
PAGE_JS = (pathlib.Path(__file__).parent / "page.js").read_text()


def tovi(program, card, *arguments):
    """What a command of tovi printed; a card that it cannot read gives nothing."""
    environment = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}
    done = subprocess.run([program, "--card", str(card), *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          timeout=60, env=environment)
    return done.stdout if done.returncode in (0, 3) else b""


def tovi_json(program, card, command):
    return json.loads(tovi(program, card, "--json", command) or b"{}")


def largest(cards):
    """The card folder with the most octets."""
    size = lambda card: sum(file.stat().st_size for file in card.rglob("*") if file.is_file())
    return max((card for card in cards.iterdir() if (card / "CARD").exists()), key=size).name


def ask(browser, call):
    return browser.evaluate(f"{PAGE_JS}.{call}")


def expected_counts(program, card):
    listed = tovi_json(program, card, "list")
    counts = {kind: len(listed.get(kind, [])) for kind in KINDS}
    counts["findings"] = len(tovi_json(program, card, "check").get("findings", []))
    return counts


def wrong_counts(browser, program, card):
    """Where the page does not show what the other commands say."""
    wanted = expected_counts(program, card)
    objects = {kind: wanted[kind] for kind in KINDS if wanted[kind] > 0}
    files = tovi_json(program, card, "dump")["files"]
    segments = {}
    for segment in (segment for file in files for segment in file["segments"]):
        segments[segment["kind"]] = segments.get(segment["kind"], 0) + 1
    found = {
        "tiles": (ask(browser, "tiles()"), {key: [count, count] for key, count in wanted.items()}),
        "rows": (ask(browser, "counts('object')"), objects),
        "containers": (sum(ask(browser, "counts('container')").values()), wanted["containers"]),
        "guards": (sum(ask(browser, "counts('auth')").values()), wanted["authObjects"]),
        "findings": (sum(ask(browser, "counts('finding')").values()), wanted["findings"]),
        "files": (sum(ask(browser, "counts('file')").values()), len(files)),
        "segments": (ask(browser, "counts('segment')"), segments),
    }
    return [f"{what}: found {there}, expected {due}" for what, (there, due) in found.items() if there != due]


def faults(browser, url):
    """What is wrong with a page by itself, at every width and in both schemes."""
    browser.look(WIDTHS[0], 800, "light")
    browser.open(url)
    found = [f"console: {error}" for error in browser.errors]
    found += [f"request: {request}" for request in browser.requests if request != url]
    found += [f"foreign: {markup}" for markup in ask(browser, "foreign()")]
    found += [f"broken: {what}" for what in ask(browser, "broken()")]
    ask(browser, "unfold()")
    for width in WIDTHS:
        for scheme in SCHEMES:
            browser.look(width, 800, scheme)
            found += [f"contrast in {scheme}: {text}" for text in ask(browser, "faint()")]
        overflow = ask(browser, "overflow()")
        if overflow > 0:
            found.append(f"overflow at {width}: {overflow} pixels")
        if ask(browser, "distortion()") > 2:
            found.append(f"a bar at {width} is not in proportion")
    return found


def take_screenshots(browser, url, name, folder):
    for width in WIDTHS:
        for scheme in SCHEMES:
            browser.look(width, 900, scheme)
            browser.open(url)
            browser.screenshot(folder / f"{name}-{width}-{scheme}.png")


# Each of them has to be found, or the test is blind.
PLANTED = {
    "console": "<script>console.error('planted')</script>",
    "request": '<img alt="" src="pixel.png">',
    "foreign": '<img alt="" src="data:image/gif;base64,R0lGODlhAQABAAAAACw=">',
    "broken": '<a href="#nowhere">nowhere</a>',
    "overflow": '<div style="width: 3000px">wide</div>',
    "contrast": '<p style="color: #888; background: #999">faint</p>',
}


def blind_spots(browser, page, folder):
    """The kinds of fault that are planted and not found."""
    missed = []
    for kind, markup in PLANTED.items():
        planted = page.replace("</main>", markup + "</main>", 1)
        if kind == "request":
            planted = planted.replace("default-src 'none'", "default-src file:", 1)
        elif kind == "console":
            planted = planted.replace("default-src 'none'", "default-src 'unsafe-inline'", 1)
        file = folder / f"planted-{kind}.html"
        file.write_text(planted)
        if not any(fault.startswith(kind) for fault in faults(browser, file.as_uri())):
            missed.append(f"a planted fault was not found: {kind}")
    # The page's own policy stops a script that came in all the same.
    file = folder / "planted-policy.html"
    file.write_text(page.replace("</main>", "<script>document.title = 'planted'</script></main>", 1))
    browser.open(file.as_uri())
    if not browser.errors or browser.evaluate("document.title") == "planted":
        missed.append("a planted script ran")
    return missed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("tovi")
    parser.add_argument("cards", type=pathlib.Path)
    parser.add_argument("--screenshots", type=pathlib.Path)
    options = parser.parse_args()
    program = chromium.find()
    if program is None:
        print("SKIPPED: there is no chromium here, so nobody looked at the pages of tovi report")
        return 77
    names = list(dict.fromkeys((*NAMED, largest(options.cards))))
    failures = []
    with tempfile.TemporaryDirectory() as temporary, chromium.Browser(program) as browser:
        folder = pathlib.Path(temporary)
        for name in names:
            card = options.cards / name
            file = folder / f"{name}.html"
            file.write_bytes(tovi(options.tovi, card, "report"))
            found = faults(browser, file.as_uri())
            found += wrong_counts(browser, options.tovi, card)
            print(f"{name}: {len(found)} faults in {file.stat().st_size} octets")
            failures += [f"{name}: {fault}" for fault in found]
            if options.screenshots:
                options.screenshots.mkdir(parents=True, exist_ok=True)
                take_screenshots(browser, file.as_uri(), name, options.screenshots)
        failures += blind_spots(browser, (folder / "rich.html").read_text(), folder)
    for failure in failures:
        print("FAILED", failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
