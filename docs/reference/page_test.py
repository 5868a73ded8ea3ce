#!/usr/bin/env python3
"""Uses the event reference's page as a reader would, in Chromium without a window, and fails on the first mismatch.

    page_test.py CHROMEDRIVER PAGE FOLDER

Leaves pictures of both colour schemes and of a narrow screen in FOLDER.
"""

import base64
import json
import os
import re
import subprocess
import sys
import urllib.error
import urllib.request
from pathlib import Path

TAB, ENTER = "\ue004", "\ue007"
LEAST_CONTRAST = 4.5  # of text, by WCAG 2


class Browser:
    """A session with chromedriver, by the WebDriver protocol."""

    def __init__(self, chromedriver):
        self.driver = subprocess.Popen([chromedriver, "--port=0"], stdout=subprocess.PIPE, text=True)
        lines = map(re.compile(r"started successfully on port (\d+)").search, self.driver.stdout)
        self.session = "http://127.0.0.1:" + next(line[1] for line in lines if line)
        arguments = ["--headless=new", "--window-size=1280,900", "--disable-dev-shm-usage"]
        if os.geteuid() == 0:
            arguments.append("--no-sandbox")  # Chromium refuses root otherwise
        options = {"goog:chromeOptions": {"args": arguments}, "goog:loggingPrefs": {"browser": "ALL"}}
        try:
            session = self.send("/session", {"capabilities": {"alwaysMatch": options}})
        except BaseException:
            self.stop()
            raise
        self.session += "/session/" + session["sessionId"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.send("", method="DELETE")
        finally:
            self.stop()

    def stop(self):
        self.driver.terminate()
        self.driver.wait()

    def send(self, path, body=None, method="POST"):
        data = None if method == "DELETE" else json.dumps(body or {}).encode()
        request = urllib.request.Request(self.session + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(request, timeout=120) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            sys.exit(f"{method} {path}: " + json.load(error)["value"]["message"])

    def open(self, page):
        self.send("/url", {"url": page.resolve().as_uri()})

    def run(self, script, *arguments):
        return self.send("/execute/sync", {"script": script, "args": list(arguments)})

    def tools(self, command, **parameters):
        return self.send("/goog/cdp/execute", {"cmd": command, "params": parameters})

    def press(self, keys):
        """On whatever has the focus."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.send("/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})

    def console(self):
        return self.send("/se/log", {"type": "browser"})

    def picture(self, file):
        file.write_bytes(base64.b64decode(self.tools("Page.captureScreenshot")["data"]))

    def set_width(self, width):
        self.tools("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)

    def set_scheme(self, scheme):
        self.tools("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])


def expect(what, found, expected):
    if found != expected:
        sys.exit(f"{what}\nexpected: {expected}\nfound:    {found}")


ALL = "return [...document.querySelectorAll('article')].map(event => event.id)"
SHOWN = """
return [...document.querySelectorAll("article")].filter(event => event.checkVisibility()).map(event => event.id)"""
FOCUS = "const element = document.activeElement; return element.id || element.getAttribute('href')"
OUTLINE = "const style = getComputedStyle(document.activeElement); return [style.outlineStyle, style.outlineWidth]"
DISTANCE_TO_SEARCH = """
const [top, bottom] = [document.activeElement, document.querySelector("form")].map(e => e.getBoundingClientRect());
return top.top - bottom.bottom"""
TYPE_IN = """
const search = document.getElementById("search");
search.value = arguments[0];
search.dispatchEvent(new Event("input"))"""
# Red, green and blue as the screen shows them.
COLOURS = """
const context = document.createElement("canvas").getContext("2d", { willReadFrequently: true });
return arguments[1].map(property => {
    context.fillStyle = getComputedStyle(document.querySelector(arguments[0]))[property];
    context.fillRect(0, 0, 1, 1);
    return [...context.getImageData(0, 0, 1, 1).data].slice(0, 3);
})"""


def contrast(one, other):
    def luminance(colour):
        parts = [c / 255 / 12.92 if c / 255 <= 0.04045 else ((c / 255 + 0.055) / 1.055) ** 2.4 for c in colour]
        return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]

    lighter, darker = sorted((luminance(one), luminance(other)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


def press_tab_until(browser, focus):
    """And each place on the way must show that it has the focus."""
    for _ in range(100):
        browser.press([TAB])
        expect(f"the outline of {browser.run(FOCUS)}", browser.run(OUTLINE), ["solid", "3px"])
        if browser.run(FOCUS) == focus:
            return
    sys.exit(f"The key Tab does not lead to {focus}")


def the_page_is_all_in_one_file(browser):
    others = browser.run("return [...document.querySelectorAll('[src], [srcset], link')].map(e => e.src || e.href)")
    expect("other files", [name for name in others if not name.startswith("data:")], [])
    styles = browser.run("return [...document.querySelectorAll('style')].map(style => style.textContent).join('')")
    expect("other files of the style", re.findall(r"@import.*|url\(.*", styles), [])


def every_link_leads_somewhere(browser):
    lost = browser.run("return [...document.querySelectorAll('a')].map(link => link.getAttribute('href'))"
                       ".filter(target => !document.getElementById(target.slice(1)))")
    expect("links that lead nowhere", lost, [])
    twice = browser.run("const ids = [...document.querySelectorAll('[id]')].map(element => element.id);"
                        "return ids.filter((id, index) => ids.indexOf(id) !== index)")
    expect("identifiers that stand twice", twice, [])


def headings_and_labels_are_in_order(browser):
    expect("the search's label", browser.run("return document.getElementById('search').labels[0].textContent"),
           "Search names, keys and methods")
    levels = browser.run("return [...document.querySelectorAll('h1, h2, h3')].map(heading => +heading.tagName[1])")
    expect("the first headings", levels[:3], [1, 2, 3])
    skipped = [pair for pair in zip(levels, levels[1:]) if pair[1] > pair[0] + 1]
    expect("headings that skip a level", skipped, [])


def the_keyboard_alone_finds_all_events_of_a_key(browser):
    press_tab_until(browser, "search")
    events = browser.run(SHOWN)
    expect("the events at first", events, browser.run(ALL))

    browser.press("Wheel ZONE")
    expect("the events with the zone", browser.run(SHOWN), ["TrackSteerWheelClicked", "TrackSteerWheelDragBegin"])
    expect("the count", browser.run("return document.getElementById('found').textContent"), f"2 of {len(events)} events")
    expect("the contents beside them", browser.run("return [...document.querySelectorAll('nav [data-of]')]"
           ".filter(item => item.checkVisibility()).map(item => item.dataset.of)"),
           ["Steering-wheel", "TrackSteerWheelClicked", "TrackSteerWheelDragBegin"])

    # Its line is hidden by the search, as it says nothing of a wheel: following the link ends the search.
    press_tab_until(browser, "#key-COMMON.ZEPH_SW_ZONE")
    browser.press([ENTER])
    expect("the focus behind the key", browser.run(FOCUS), "key-COMMON.ZEPH_SW_ZONE")
    expect("the events after it", browser.run(SHOWN), events)
    links = browser.run("return [...document.activeElement.querySelectorAll('a')].map(link => link.textContent)")
    expect("the events that carry the key", links, ["TrackSteerWheelClicked", "TrackSteerWheelDragBegin"])

    press_tab_until(browser, "#TrackSteerWheelDragBegin")
    browser.press([ENTER])
    expect("the focus behind the event", browser.run(FOCUS), "TrackSteerWheelDragBegin")
    distance = browser.run(DISTANCE_TO_SEARCH)
    if not 0 <= distance < 100:
        sys.exit(f"The event stands {distance} pixels below the search")


def the_search_takes_names_keys_and_methods(browser):
    for text, expected in (
        ("cv.ppr", ["TrackPPR"]),  # a name
        ("document_editing", ["StartTrackFileChange"]),  # a key
        ("trackmeshsize", ["TrackMeshSize"]),  # a method
        ("networkpath", []),
    ):
        browser.run(TYPE_IN, text)
        expect(f"the events for {text}", browser.run(SHOWN), expected)
    browser.run(TYPE_IN, "")


def both_schemes_can_be_read(browser, folder):
    backs = []
    for scheme in ("light", "dark"):
        browser.set_scheme(scheme)
        browser.run("document.getElementById('TrackSteerWheelClicked').scrollIntoView()")
        browser.picture(folder / f"{scheme}.png")
        [back] = browser.run(COLOURS, "body", ["backgroundColor"])
        [panel] = browser.run(COLOURS, "pre", ["backgroundColor"])
        [marked] = browser.run(COLOURS, ":target", ["backgroundColor"])
        backs.append(back)
        for element in ("body", "article a", "thead th", "#found", "pre"):
            [text] = browser.run(COLOURS, element, ["color"])
            least = min(contrast(text, behind) for behind in (back, panel, marked))
            if least < LEAST_CONTRAST:
                sys.exit(f"The contrast of {element} is {least:.2f} in the {scheme} scheme")
    if sum(backs[0]) <= sum(backs[1]):
        sys.exit(f"The light scheme's background {backs[0]} is not lighter than {backs[1]}")


def a_narrow_screen_needs_no_scrolling_sideways(browser, folder):
    browser.set_width(360)
    wide, shown = browser.run("const page = document.documentElement; return [page.scrollWidth, page.clientWidth]")
    expect("the page's width", wide, shown)
    for scheme in ("light", "dark"):
        browser.set_scheme(scheme)
        browser.run("document.getElementById('TrackSteerWheelClicked').scrollIntoView()")
        browser.picture(folder / f"narrow-{scheme}.png")


def main():
    chromedriver, page, folder = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    with Browser(chromedriver) as browser:
        browser.open(page)
        the_page_is_all_in_one_file(browser)
        every_link_leads_somewhere(browser)
        headings_and_labels_are_in_order(browser)
        the_keyboard_alone_finds_all_events_of_a_key(browser)
        the_search_takes_names_keys_and_methods(browser)
        both_schemes_can_be_read(browser, folder)
        a_narrow_screen_needs_no_scrolling_sideways(browser, folder)
        expect("the console", browser.console(), [])


main()
