#!/usr/bin/python3
"""Uses the event reference's page as a reader would, in Chromium without a window.

    page_test.py CHROMEDRIVER PAGE FOLDER [TEST...]

events.json and events.csv lie beside PAGE. Leaves pictures of both colour schemes, of a search and of a narrow screen
in FOLDER. The browser is driven by Selenium, Debian's python3-selenium.
"""

import contextlib
import json
import os
import re
import sys
import tempfile
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.common.exceptions import TimeoutException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.wait import WebDriverWait

sys.dont_write_bytecode = True
import render  # noqa: E402
from changes import newest_release  # noqa: E402
from render_test import changes, document, event, fixed, key  # noqa: E402

CHROMEDRIVER, PAGE, FOLDER = sys.argv[1], Path(sys.argv[2]).resolve(), Path(sys.argv[3])
LEAST_CONTRAST = 4.5  # of text, by WCAG 2
LONGEST_WAIT = 120  # seconds, for what ends of itself

SHOWN = "return [...document.querySelectorAll(arguments[0])].filter(element => element.checkVisibility())"
EVENTS = SHOWN + ".map(element => element.id)"
TEXTS = SHOWN + r".map(element => element.textContent.replace(/\s+/g, ' ').trim())"
FOCUS = "const element = document.activeElement; return element.id || element.getAttribute('href')"
OUTLINE = "const style = getComputedStyle(document.activeElement); return [style.outlineStyle, style.outlineWidth]"
DISTANCE_TO_SEARCH = """
const [top, bottom] = [document.activeElement, document.querySelector("form")].map(e => e.getBoundingClientRect());
return top.top - bottom.bottom"""
WIDTHS = "const page = document.documentElement; return [page.scrollWidth, page.clientWidth]"
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


class InABrowser(unittest.TestCase):
    """Each test opens the page anew."""

    page = PAGE

    @classmethod
    def setUpClass(cls):
        options = webdriver.ChromeOptions()
        arguments = ["--headless=new", "--disable-dev-shm-usage"]
        if os.geteuid() == 0:
            arguments.append("--no-sandbox")  # Chromium refuses root otherwise
        for argument in arguments:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        cls.browser = webdriver.Chrome(options=options, service=Service(CHROMEDRIVER))
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.set_script_timeout(LONGEST_WAIT)

    def setUp(self):
        self.set_width(1280)
        self.open()

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [], "the browser's console is not empty")

    def open(self, end=""):
        self.browser.get("about:blank")  # as another fragment alone would not load the page
        self.browser.get(self.page.as_uri() + end)

    def run_script(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def tools(self, command, **parameters):
        return self.browser.execute_cdp_cmd(command, parameters)

    def set_width(self, width):
        self.tools("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)

    def set_scheme(self, scheme):
        self.tools("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def press(self, keys):
        """On whatever has the focus."""
        ActionChains(self.browser).send_keys(keys).perform()

    def press_tab_until(self, focus):
        """And each place on the way must show that it has the focus."""
        for _ in range(150):
            self.press(Keys.TAB)
            self.assertEqual(self.run_script(OUTLINE), ["solid", "3px"], f"of {self.run_script(FOCUS)}")
            if self.run_script(FOCUS) == focus:
                return
        self.fail(f"The key Tab does not lead to {focus}")

    def wait_until(self, holds):
        """Or until it has taken too long: what must hold is to be tested afterwards."""
        with contextlib.suppress(TimeoutException):
            WebDriverWait(self.browser, LONGEST_WAIT).until(lambda _: holds())

    def search(self, words="", **filters):
        """Opens the page with a search."""
        self.open()
        self.type(words)
        for name, value in filters.items():
            self.choose(name, value)

    def type(self, words):
        self.browser.find_element(By.ID, "search").send_keys(words)

    def choose(self, name, value):
        self.run_script(
            "const list = document.getElementById(arguments[0]); list.value = arguments[1];"
            "list.dispatchEvent(new Event('input', { bubbles: true }))", name, value)  # fmt: skip
        self.assertEqual(self.value(name), value, f"{name} has no such value")

    def value(self, name):
        return self.browser.find_element(By.ID, name).get_property("value")

    def text(self, name):
        return self.browser.find_element(By.ID, name).text

    def events(self):
        return self.run_script(EVENTS, "article")

    def rows(self, of="article"):
        """The keys that are shown, in all events or in one."""
        return [text.split()[0] for text in self.run_script(TEXTS, f"{of} .row th a, {of} li.row > a")]

    def hits(self):
        return self.run_script(TEXTS, "article .hit a")

    def lines(self, section):
        return self.run_script(TEXTS, f"#{section} .line")

    def keys(self):
        return self.run_script(TEXTS, "#keys .line > a")

    def sections(self):
        return self.run_script(EVENTS, "main section")


class TheReference(InABrowser):
    """The real page. What it must show is taken from events.json beside it."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.document = json.loads(PAGE.with_name("events.json").read_text(encoding="utf-8"))
        cls.all_events = [event for group in cls.document["groups"] for event in group["events"]]
        cls.all_keys = {key["key"] for event in cls.all_events for key in event["keys"]}
        cls.all_keys |= {key["key"] for key in cls.document["common"]}

    def with_a_key(self, fits):
        """The methods of the events that have a key which fits; and the keys which do, those of all events too."""
        methods = [event["method"] for event in self.all_events if any(map(fits, event["keys"]))]
        everywhere = [*self.document["common"], *(key for event in self.all_events for key in event["keys"])]
        return methods, {key["key"] for key in everywhere if fits(key)}

    def test_is_all_in_one_file(self):
        others = self.run_script("return [...document.querySelectorAll('[src], [srcset], link')]")
        others = [other.get_dom_attribute("src") or other.get_dom_attribute("href") for other in others]
        self.assertEqual([name for name in others if not str(name).startswith("data:")], [])
        styles = self.run_script("return [...document.querySelectorAll('style')].map(e => e.textContent).join('')")
        self.assertEqual(re.findall(r"@import.*|url\(.*", styles), [])
        loaded = self.run_script("return performance.getEntriesByType('resource').map(entry => entry.name)")
        self.assertEqual([name for name in loaded if not name.startswith("data:")], [])

    def test_has_links_that_lead_somewhere(self):
        links = self.run_script("return [...document.querySelectorAll('a')].map(link => link.getAttribute('href'))")
        ids = self.run_script("return [...document.querySelectorAll('[id]')].map(element => element.id)")
        self.assertEqual(sorted(ids), sorted(set(ids)), "identifiers that stand twice")
        inside = [link[1:] for link in links if link.startswith("#") and link != "#"]
        self.assertEqual([link for link in inside if "=" not in link and link not in ids], [])
        searches = [link for link in inside if "=" in link]
        self.assertTrue(searches)
        for search in searches:
            self.open("#" + search)
            self.assertRegex(self.text("found"), "^[0-9]+ of ", search)

    def test_has_headings_and_labels_in_order(self):
        labels = {name: self.run_script("return document.getElementById(arguments[0]).labels[0].textContent", name)
                  for name in ("search", "kind", "sensitivity", "personal")}
        self.assertEqual(
            labels,
            {"search": "Search everything", "kind": "Kind", "sensitivity": "Sensitivity",
             "personal": "May hold a person's text"},
        )  # fmt: skip
        levels = self.run_script("return [...document.querySelectorAll('h1, h2, h3')].map(e => +e.tagName[1])")
        self.assertEqual(levels[:3], [1, 2, 3])
        self.assertEqual([pair for pair in zip(levels, levels[1:]) if pair[1] > pair[0] + 1], [], "skipped levels")

    def test_says_at_the_top_what_it_is_of(self):
        expected = "{product} {version}, {date}".format(**self.document)
        if self.document["unreleased"]:
            expected += ", with changes since that are not released"
        self.assertEqual(self.text("version"), expected)
        self.assertTrue(self.document["about"])
        about = self.text("about")
        for paragraph in self.document["about"]:
            self.assertIn("{heading}\n{text}".format(**paragraph).replace("`", ""), about)
        tops = self.run_script("return ['version', 'about', 'events'].map("
                               "id => document.getElementById(id).getBoundingClientRect().top)")  # fmt: skip
        self.assertEqual(tops, sorted(tops))

    def test_counts_events_and_keys(self):
        self.assertIn(f"{len(self.all_events)} events with {len(self.all_keys)} keys", self.text("counts"))
        rows = zip(self.run_script(TEXTS, "#counts tbody th"), self.run_script(TEXTS, "#counts tbody td"), strict=True)
        counted = {}
        for level in ("technical", "interaction", "stored content", "highly sensitive"):
            counted[level] = len(self.with_a_key(lambda key, level=level: key["sensitivity"] == level)[1])
        counted["may hold a person's text"] = len(self.with_a_key(lambda key: key["personal_text"])[1])
        self.assertEqual({what: int(count) for what, count in rows}, counted)

    def test_shows_all_events_with_all_keys_at_first(self):
        self.assertEqual(self.events(), [event["method"] for event in self.all_events])
        for event in self.all_events:
            expected = sorted(key["key"] for key in event["keys"])
            self.assertEqual(sorted(self.rows("#" + event["method"])), expected, event["method"])
        self.assertEqual(self.text("found"), f"{len(self.all_events)} events, {len(self.all_keys)} keys")
        self.assertEqual(self.browser.find_element(By.ID, "link").is_displayed(), False)

    def test_can_be_searched_by_keyboard_alone(self):
        self.press_tab_until("search")
        self.press("TrackSteerWheel ZONE")
        self.assertEqual(self.events(), ["TrackSteerWheelClicked", "TrackSteerWheelDragBegin"])
        self.assertEqual(self.text("found"), f"2 of {len(self.all_events)} events, 0 of {len(self.all_keys)} keys")
        self.assertEqual(self.hits(), ["COMMON.ZEPH_SW_ZONE"] * 2)
        self.assertEqual(
            self.run_script("return [...document.querySelectorAll('nav [data-of]')]"
                            ".filter(item => item.checkVisibility()).map(item => item.dataset.of)"),
            ["Steering-wheel", "TrackSteerWheelClicked", "TrackSteerWheelDragBegin"],
        )  # fmt: skip

        # Its line is hidden by the search, as it does not name the method: following the link ends the search.
        self.press_tab_until("#key-COMMON.ZEPH_SW_ZONE")
        self.press(Keys.ENTER)
        self.wait_until(lambda: self.run_script(FOCUS) == "key-COMMON.ZEPH_SW_ZONE")
        self.assertEqual(self.run_script(FOCUS), "key-COMMON.ZEPH_SW_ZONE")
        self.assertEqual(self.value("search"), "")
        self.assertEqual(self.events(), [event["method"] for event in self.all_events])
        links = self.run_script("return [...document.activeElement.querySelectorAll('a')].map(e => e.textContent)")
        self.assertEqual(links, ["COMMON.ZEPH_SW_ZONE", "TrackSteerWheelClicked", "TrackSteerWheelDragBegin"])

        self.press_tab_until("#TrackSteerWheelDragBegin")
        self.press(Keys.ENTER)
        self.wait_until(lambda: self.run_script(FOCUS) == "TrackSteerWheelDragBegin")
        self.assertEqual(self.run_script(FOCUS), "TrackSteerWheelDragBegin")
        distance = self.run_script(DISTANCE_TO_SEARCH)
        self.assertTrue(0 <= distance < 100, f"The event stands {distance} pixels below the search")

    def test_can_be_filtered_and_downloaded_by_keyboard_alone(self):
        self.press_tab_until("as-json")
        self.press_tab_until("as-table")
        self.press_tab_until("kind")
        self.press("flag")
        self.assertEqual(self.value("kind"), "flag")
        flags = self.events()
        self.assertEqual(flags, self.with_a_key(lambda key: key["kind"] == "flag")[0])
        self.press_tab_until("personal")
        self.press("yes")
        self.assertEqual(self.events(), [])
        ActionChains(self.browser).key_down(Keys.SHIFT).send_keys(Keys.TAB).key_up(Keys.SHIFT).perform()
        self.assertEqual(self.run_script(FOCUS), "sensitivity")
        self.press_tab_until("all")
        self.press(Keys.ENTER)
        self.assertEqual(self.value("kind") + self.value("personal"), "")
        self.assertEqual(len(self.events()), len(self.all_events))
        self.assertEqual(self.run_script(FOCUS), "search")

    def test_finds_what_is_said_of_each_event(self):
        for words, expected in (
            ("cv.ppr", ["TrackPPR"]),  # a name
            ("document_editing", ["StartTrackFileChange"]),  # a key
            ("trackmeshsize", ["TrackMeshSize"]),  # a method
            ("isNetworkPath", ["TrackFileInput"]),  # a parameter
            ("serial number", ["TrackUpdateLicense"]),  # a parameter's words
            ("steering wheel drag", ["TrackSteerWheelDragBegin"]),  # a heading, and a method
            ("jobs", ["TrackPPR"]),  # a note
            ("xyzzy", []),
        ):
            with self.subTest(words):
                self.search(words)
                self.assertEqual(self.events(), expected)

    def test_filters_keys_by_kind_sensitivity_and_a_persons_text(self):
        for name, values in (
            ("kind", ("text", "number", "flag", "product", "fixed")),
            ("sensitivity", ("technical", "interaction", "stored content", "highly sensitive")),
            ("personal", ("yes", "no")),
        ):
            for value in values:
                with self.subTest(**{name: value}):
                    def fits(key, name=name, value=value):
                        if name == "personal":
                            return key["personal_text"] == (value == "yes")
                        return key[name] == value

                    self.search(**{name: value})
                    methods, keys = self.with_a_key(fits)
                    self.assertEqual(self.events(), methods)
                    self.assertEqual(set(self.keys()), keys)
                    rows = {key["key"] for event in self.all_events for key in event["keys"] if fits(key)}
                    self.assertEqual(set(self.rows()), rows)
                    common = [key["key"] for key in self.document["common"] if fits(key)]
                    self.assertEqual(self.run_script(TEXTS, "#common .line th"), common)
                    self.assertFalse({"about", "changes", "unsent"} & set(self.sections()))

    def test_wants_one_key_to_fit_two_filters(self):
        for kind in ("text", "fixed"):
            for personal in ("yes", "no"):
                with self.subTest(kind=kind, personal=personal):
                    self.search(kind=kind, personal=personal)
                    methods, keys = self.with_a_key(
                        lambda key, kind=kind, personal=personal:
                            key["kind"] == kind and key["personal_text"] == (personal == "yes"))  # fmt: skip
                    self.assertEqual(self.events(), methods)
                    self.assertEqual(set(self.keys()), keys)

    def test_links_to_each_event_and_each_key(self):
        targets = [event["method"] for event in self.all_events] + ["key-" + key for key in sorted(self.all_keys)]
        links = self.run_script("return [...document.querySelectorAll('h3 > a, #keys .line > a')].map(e => e.hash)")
        self.assertEqual(sorted(links), sorted("#" + target for target in targets))
        for target in ("TrackMeshSize", "key-content_name"):
            self.open("#" + target)
            self.assertEqual(self.run_script("return document.querySelector(':target').id"), target)
            self.assertEqual(len(self.events()), len(self.all_events))

    def test_offers_the_files_beside_it(self):
        with tempfile.TemporaryDirectory() as folder:
            self.tools("Browser.setDownloadBehavior", behavior="allow", downloadPath=folder)
            for name, file in (("as-json", "events.json"), ("as-table", "events.csv")):
                with self.subTest(file):
                    self.browser.find_element(By.ID, name).click()
                    expected = PAGE.with_name(file).read_bytes()
                    made = Path(folder) / file
                    self.wait_until(lambda made=made, size=len(expected): made.exists() and made.stat().st_size >= size)
                    self.assertTrue(made.exists(), f"{file} has not come")
                    self.assertTrue(made.read_bytes() == expected, f"{file} is not what the page offers")

    def test_answers_whether_a_serial_number_is_sent(self):
        self.search("is a serial number sent?")
        self.assertEqual(self.events(), ["TrackUpdateLicense"])
        self.search("serial")
        self.assertEqual(self.events(), ["TrackUpdateLicense"])
        self.assertEqual(self.hits(), ["entitlement_license_id"])
        [row] = self.run_script(TEXTS, "article .hit")
        self.assertIn("serialNumber", row)
        self.assertEqual(self.keys(), ["entitlement_license_id"])

    def test_answers_which_events_may_hold_a_files_name(self):
        self.search("file name", personal="yes")
        asked_in_short = self.events()
        self.search("which events may hold a file's name?", personal="yes")
        self.assertEqual(self.events(), asked_in_short)
        found = self.events()
        self.assertIn("StartTrackFileChange", found)
        self.assertIn("COMMON.FILE.NAME", self.rows("#StartTrackFileChange"))
        self.assertLess(len(found), len(self.all_events) / 2)
        may = {event["method"] for event in self.all_events if any(key["personal_text"] for key in event["keys"])}
        self.assertEqual([method for method in found if method not in may], [])
        self.browser.save_screenshot(str(FOLDER / "search.png"))

    def test_takes_words_as_they_are_that_are_no_question(self):
        self.search("serial sent")
        self.assertEqual(self.events(), [])
        self.search("serial sent?")
        self.assertEqual(self.events(), ["TrackUpdateLicense"])

    def test_answers_what_has_changed_since_the_release(self):
        version = newest_release().stem
        self.search(f"what has changed since {version}?")
        self.assertEqual(self.sections(), ["changes"])
        self.assertTrue(self.lines("changes"))
        self.assertIn(f"also: Changes since {version}", self.text("found"))

    def test_can_be_read_without_scripts(self):
        self.tools("Emulation.setScriptExecutionDisabled", value=True)
        self.addCleanup(self.tools, "Emulation.setScriptExecutionDisabled", value=False)
        self.open()
        articles = self.browser.find_elements(By.TAG_NAME, "article")
        self.assertEqual(len([article for article in articles if article.is_displayed()]), len(self.all_events))
        self.assertFalse(self.browser.find_element(By.TAG_NAME, "form").is_displayed())
        for name, file in (("as-json", "events.json"), ("as-table", "events.csv")):
            link = self.browser.find_element(By.ID, name)
            self.assertEqual([link.get_dom_attribute("href"), link.get_dom_attribute("download")], [file, file])

    def test_can_be_read_in_both_schemes(self):
        backs = []
        for scheme in ("light", "dark"):
            self.set_scheme(scheme)
            self.search("tool", kind="flag")
            self.run_script("location.hash = 'TrackNavBarToolClicked'")
            self.browser.save_screenshot(str(FOLDER / f"{scheme}.png"))
            [back] = self.run_script(COLOURS, "body", ["backgroundColor"])
            [panel] = self.run_script(COLOURS, "pre", ["backgroundColor"])
            [field] = self.run_script(COLOURS, "select", ["backgroundColor"])
            [marked] = self.run_script(COLOURS, ":target", ["backgroundColor"])
            [hit] = self.run_script(COLOURS, ".hit", ["backgroundColor"])
            self.assertNotEqual(hit, back, "a key that was found is not marked")
            backs.append(back)
            for element in ("body", "article a", "thead th", "#found", "#link", "pre", "input", "select", "button",
                            "article small", "article strong", ".rest", "h2 a", "header a"):  # fmt: skip
                [text] = self.run_script(COLOURS, element, ["color"])
                least = min(contrast(text, behind) for behind in (back, panel, field, marked, hit))
                self.assertGreaterEqual(least, LEAST_CONTRAST, f"the contrast of {element} in the {scheme} scheme")
        self.assertGreater(sum(backs[0]), sum(backs[1]), "the light scheme's background is not lighter")

    def test_needs_no_scrolling_sideways_on_a_narrow_screen(self):
        self.set_width(360)
        for scheme in ("light", "dark"):
            self.set_scheme(scheme)
            for end in ("", "#TrackSteerWheelLoadOption", "#q=tool&kind=flag&sensitivity=highly+sensitive",
                        "#q=" + "w" * 200 + "&kind=product", "#q=tool&personal=yes"):  # fmt: skip
                self.open(end)
                wide, shown = self.run_script(WIDTHS)
                self.assertEqual(wide, shown, end)
            self.browser.save_screenshot(str(FOLDER / f"narrow-{scheme}.png"))


class AnyReference(InABrowser):
    """A page of a small reference, made by hand, with all that a reference can have."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        doors = [
            event("TrackDoor", [
                fixed("type", "C"),
                key("A.FILE.NAME", ground="A file's name.", personal_text=True, sensitivity="stored content"),
                key("A.DOOR_WIDTH", kind="number", format="signed", unit="furlongs", sensitivity="technical",
                    **{"from": "doorWidth"}),
            ], purpose="Tells that a hinge creaked.", name="A.DOOR"),
            event("TrackGate", [
                key("A.TITLE", **{"from": "givenTitle"}, no_personal_text="An entry of a list.", ground="A file."),
                key("A.OPEN", kind="flag", ground="A state.", **{"from": "isOpen"}),
            ], name=None, note="Sent at dusk.",
                  signatures=["void TrackGate(int givenTitle,\n               bool isOpen, int unsent = 3);"],
                  parameters=["givenTitle", "isOpen", "unsent"]),
            event("TrackLock", [key("A.FILE.NAME", ground="A secret.", personal_text=True, example="waxen",
                                    sensitivity="highly sensitive", place="content_meta", **{"from": "secret"})],
                  name="given.lock", name_from="lockTitle", names=["given.lock"]),
        ]  # fmt: skip
        whole = document(
            *doors,
            about=[{"heading": "In test mode", "text": "Nothing goes `anywhere`."}],
            unsent=[{"text": "A.SPARE", "example_of": "TrackLock"}],
        )
        roofs = [event("TrackRoof", [], name="R")]
        whole["groups"].append({"heading": "Roofs", "notes": ["Over all."], "events": roofs})
        cls.page = Path(folder.name) / "events.html"
        cls.page.write_bytes(render.page(whole, changes("TrackDoor: A.DOOR_WIDTH became wider.")).encode())

    def test_finds_words_wherever_something_is_said(self):
        for words, expected in (
            ("a.open", ["TrackGate"]),  # a key
            ("content_meta", ["TrackLock"]),  # the object that holds it
            ("given.lock", ["TrackLock"]),  # a name
            ("TRACKROOF", ["TrackRoof"]),  # a method
            ("doorwidth", ["TrackDoor"]),  # a parameter; and a key without what divides it
            ("lockTitle", ["TrackLock"]),  # a parameter that gives the name
            ("unsent", ["TrackGate"]),  # a parameter that is not sent
            ("roofs", ["TrackRoof"]),  # a heading
            ("creaked", ["TrackDoor"]),  # a purpose
            ("over all", ["TrackRoof"]),  # a group's note
            ("dusk", ["TrackGate"]),  # a method's note
            ("secret", ["TrackLock"]),  # a ground
            ("furlongs", ["TrackDoor"]),  # a unit
            ("highly", ["TrackLock"]),  # a sensitivity
            ("list", ["TrackGate"]),  # why it holds no person's text
            ("number", ["TrackDoor"]),  # a kind
            ("waxen", []),  # an example says nothing
        ):
            with self.subTest(words):
                self.search(words)
                self.assertEqual(self.events(), expected)

    def test_finds_words_however_they_are_written(self):
        for words in ("file name", "FILE.NAME", "  name   file ", "filename", "a file's name?", "a file’s name!",
                      "file, name.", '"file\'s name"', "“a file’s name”"):  # fmt: skip
            with self.subTest(words):
                self.search(words, sensitivity="stored content")
                self.assertEqual(self.events(), ["TrackDoor"])
                self.assertEqual(self.rows(), ["A.FILE.NAME"])

    def test_shows_events_where_one_place_has_all_words_before_those_where_they_stand_apart(self):
        self.search("file title")  # in TrackGate's first key, and apart in TrackLock
        self.assertEqual(self.events(), ["TrackGate"])
        self.assertEqual(self.hits(), ["A.TITLE"])
        self.assertEqual(self.text("found"), "1 of 4 events, 1 of 6 keys; 1 more with the words apart")
        self.browser.find_element(By.LINK_TEXT, "1 more with the words apart").click()
        self.wait_for_events(["TrackGate", "TrackLock"])
        address = self.browser.find_element(By.ID, "link").get_property("hash")
        self.open(address)
        self.assertEqual(self.events(), ["TrackGate", "TrackLock"])
        self.type(" ")  # another search
        self.assertEqual(self.events(), ["TrackGate"])
        self.search("dusk open")  # of the event, and of its key
        self.assertEqual(self.events(), ["TrackGate"])
        self.assertEqual(self.hits(), ["A.OPEN"])

    def test_finds_no_event_by_words_of_keys_that_the_filters_leave_out(self):
        self.search("width", kind="text")
        self.assertEqual(self.events(), [])
        self.choose("kind", "number")
        self.assertEqual(self.events(), ["TrackDoor"])
        self.assertEqual(self.rows(), ["A.DOOR_WIDTH"])
        self.assertEqual(self.run_script(TEXTS, "#TrackDoor .rest"), ["2 other keys not shown"])
        self.choose("kind", "")
        self.assertEqual(self.rows(), ["type", "A.FILE.NAME", "A.DOOR_WIDTH"])
        self.assertEqual(self.run_script(TEXTS, ".rest"), [])

    def test_wants_one_key_to_fit_all_filters(self):
        for filters, expected in (
            ({"personal": "yes", "sensitivity": "highly sensitive"}, ["TrackLock"]),
            ({"kind": "number", "sensitivity": "technical", "personal": "no"}, ["TrackDoor"]),
            ({"kind": "number", "sensitivity": "stored content"}, []),  # TrackDoor has one of either
            ({"kind": "text", "personal": "no"}, ["TrackGate"]),
        ):
            with self.subTest(**filters):
                self.search(**filters)
                self.assertEqual(self.events(), expected)

    def test_searches_what_is_said_of_no_event(self):
        for words, section, lines in (
            ("anywhere", "about", ["In test mode Nothing goes anywhere."]),
            ("wider", "changes", ["TrackDoor: A.DOOR_WIDTH became wider."]),
            ("spare", "unsent", ["A.SPARE, a name that callers of TrackLock give"]),
        ):
            with self.subTest(words):
                self.search(words)
                self.assertEqual(self.lines(section), lines)
                self.assertEqual(self.sections(), [section])
                heading = self.run_script(TEXTS, f"#{section} h2")[0]
                self.assertEqual(self.text("found"), f"0 of 4 events, 0 of 6 keys; also: {heading}")
        self.search("every event")
        self.assertEqual(self.run_script(TEXTS, "#common .line th"), ["product"])
        for words, expected in (("secret", ["A.FILE.NAME"]), ("number", ["A.DOOR_WIDTH"]), ("waxen", [])):
            with self.subTest(words):
                self.search(words)
                self.assertEqual(self.keys(), expected)

    def test_says_what_was_asked_when_nothing_is_found(self):
        self.search("xyzzy door", kind="text", personal="no")
        self.assertEqual(self.events() + self.sections(), [])
        self.assertEqual(
            self.text("found"),
            "Nothing found for “xyzzy door”, Kind: the host's text, May hold a person's text: no",
        )
        self.assertEqual(self.browser.find_element(By.ID, "found").get_dom_attribute("role"), "status")
        self.browser.find_element(By.ID, "all").click()
        self.assertEqual(len(self.events()), 4)
        self.search(kind="product", personal="yes")
        self.assertEqual(
            self.text("found"), "Nothing found for Kind: from the product file, May hold a person's text: yes"
        )

    def test_has_a_link_for_each_search(self):
        self.search("file & näme=1 +#", kind="text", sensitivity="stored content", personal="yes")
        self.run_script("document.getElementById('search').value = ''")
        self.type("file")
        link = self.browser.find_element(By.ID, "link")
        self.assertTrue(link.is_displayed())
        self.assertEqual(link.text, "Link to this search")
        address = link.get_property("href")
        self.assertEqual(self.browser.current_url, address)
        self.open(address[address.index("#"):])
        self.assertEqual(
            [self.value(name) for name in ("search", "kind", "sensitivity", "personal")],
            ["file", "text", "stored content", "yes"],
        )
        self.assertEqual(self.rows(), ["A.FILE.NAME"])

        self.search("file & näme=1 +#")
        address = self.browser.find_element(By.ID, "link").get_property("hash")
        self.open(address)
        self.assertEqual(self.value("search"), "file & näme=1 +#")

    def test_takes_a_search_from_a_changed_address_and_back(self):
        self.search("dusk")
        self.browser.find_element(By.CSS_SELECTOR, "nav li[data-of='TrackGate'] > a").click()
        self.assertEqual(self.events(), ["TrackGate"], "a link to what is shown ended the search")
        self.run_script("location.hash = 'q=secret'")
        self.wait_for_events(["TrackLock"])
        self.browser.back()
        self.wait_for_events(["TrackDoor", "TrackGate", "TrackLock", "TrackRoof"])  # TrackGate was hidden by then
        self.browser.back()
        self.wait_for_events(["TrackGate"])
        self.assertEqual(self.value("search"), "dusk")

    def wait_for_events(self, expected):
        self.wait_until(lambda: self.events() == expected)
        self.assertEqual(self.events(), expected)

    def test_leaves_the_address_without_an_end_when_nothing_is_asked(self):
        self.search("dusk")
        self.assertTrue(self.browser.current_url.endswith("#q=dusk"))
        self.browser.find_element(By.ID, "all").click()
        self.assertEqual(self.browser.current_url, self.page.as_uri())
        self.assertFalse(self.browser.find_element(By.ID, "link").is_displayed())

    def test_shows_what_was_found_from_the_top(self):
        self.set_width(360)
        self.run_script("scrollTo(0, document.body.scrollHeight)")
        self.assertGreater(self.run_script("return scrollY"), 0)
        self.type("file")
        self.assertEqual(self.run_script("return scrollY"), 0)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
