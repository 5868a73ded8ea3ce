#!/usr/bin/python3
"""Uses the event reference's page as a reader would, in Chromium without a window, driven by Selenium.

    page_test.py CHROMEDRIVER PAGE

events.json and events.csv are beside PAGE.
"""

import base64
import json
import os
import re
import sys
import tempfile
import time
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

CHROMEDRIVER, PAGE = sys.argv[1], Path(sys.argv[2]).resolve()
DOCUMENT = json.loads(PAGE.with_name("events.json").read_text(encoding="utf-8"))
EVENTS = [event for group in DOCUMENT["groups"] for event in group["events"]]
METHODS = [event["method"] for event in EVENTS]
LEAST_CONTRAST = 4.5  # of text, by WCAG 2
LONGEST_WAIT = 60  # seconds

SHOWN = "return [...document.querySelectorAll(arguments[0])].filter(element => element.checkVisibility())"
IDS = SHOWN + ".map(element => element.id)"
TEXTS = SHOWN + r".map(element => element.textContent.replace(/\s+/g, ' ').trim())"
FOCUS = "const element = document.activeElement; return element.id || element.getAttribute('href')"
OUTLINE = "const style = getComputedStyle(document.activeElement); return [style.outlineStyle, style.outlineWidth]"
COLOUR = "return getComputedStyle(document.querySelector(arguments[0]))[arguments[1]]"


def luminance(colour):
    """By WCAG 2, of a colour such as "rgb(28, 30, 33)"."""
    parts = [int(part) / 255 for part in re.fullmatch(r"rgb\((\d+), (\d+), (\d+)\)", colour).groups()]
    parts = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


class ThePage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        options = webdriver.ChromeOptions()
        options.add_argument("--headless=new")
        options.add_argument("--disable-dev-shm-usage")
        if os.geteuid() == 0:
            options.add_argument("--no-sandbox")  # Chromium refuses root otherwise
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        cls.browser = webdriver.Chrome(options=options, service=Service(CHROMEDRIVER))
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
        self.set_width(1280)
        self.open()

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [], "the browser's console is not empty")

    def open(self, end=""):
        self.browser.get("about:blank")  # because another fragment alone would not load the page
        self.browser.get(PAGE.as_uri() + end)

    def run_script(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def tools(self, command, **parameters):
        return self.browser.execute_cdp_cmd(command, parameters)

    def set_width(self, width):
        self.tools("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)

    def wait_for(self, expected, state):
        """Waits until state() is as expected."""
        end = time.monotonic() + LONGEST_WAIT
        while (found := state()) != expected and time.monotonic() < end:
            time.sleep(0.05)
        self.assertEqual(found, expected)

    def find(self, name):
        return self.browser.find_element(By.ID, name)

    def search(self, words="", **filters):
        """Opens the page and searches."""
        self.open()
        self.find("search").send_keys(words)
        for name, value in filters.items():
            self.run_script("arguments[0].value = arguments[1];"
                            "arguments[0].dispatchEvent(new Event('input', { bubbles: true }))", self.find(name), value)

    def events(self):
        return self.run_script(IDS, "article")

    def hits(self):
        return self.run_script(TEXTS, "article .hit a")

    def press_tab_until(self, focus):
        """Each place on the way must show that it has the focus."""
        for _ in range(150):
            ActionChains(self.browser).send_keys(Keys.TAB).perform()
            self.assertEqual(self.run_script(OUTLINE), ["solid", "3px"], f"of {self.run_script(FOCUS)}")
            if self.run_script(FOCUS) == focus:
                return
        self.fail(f"The key Tab does not lead to {focus}")

    def test_shows_everything_at_first_and_loads_nothing(self):
        self.assertEqual(self.events(), METHODS)
        self.assertRegex(self.find("found").text, f"^{len(EVENTS)} events, [0-9]+ keys$")
        self.assertEqual(self.run_script("return performance.getEntriesByType('resource').map(entry => entry.name)"
                                         ".filter(name => !name.startsWith('data:'))"), [])

    def test_has_links_that_lead_somewhere(self):
        ids = self.run_script("return [...document.querySelectorAll('[id]')].map(element => element.id)")
        self.assertEqual(len(ids), len(set(ids)), "an identifier occurs twice")
        links = set(self.run_script("return [...document.querySelectorAll('a[href^=\"#\"]')].map(link => link.hash)"))
        self.assertEqual([link for link in links if link and "=" not in link and link[1:] not in ids], [])
        for link in [*(link for link in links if "=" in link), "#TrackMeshSize", "#key-content_name"]:
            self.open(link)
            if "=" in link:
                self.assertRegex(self.find("found").text, "^[1-9][0-9]* of ", link)
            else:
                self.wait_for([link[1:]], lambda: self.run_script(IDS, ":target"))
                self.assertEqual(self.events(), METHODS)

    def test_can_be_searched_by_keyboard_alone(self):
        self.press_tab_until("as-table")
        self.press_tab_until("search")
        ActionChains(self.browser).send_keys("TrackSteerWheel ZONE").perform()
        found = ["TrackSteerWheelClicked", "TrackSteerWheelDragBegin"]
        self.wait_for(found, self.events)
        self.assertEqual(self.hits(), ["COMMON.ZEPH_SW_ZONE"] * 2)
        self.assertEqual(self.run_script(TEXTS, "nav [data-of] [data-of]"), found)
        # Its line is hidden by the search, because it does not name the method: following the link ends the search.
        self.press_tab_until("#key-COMMON.ZEPH_SW_ZONE")
        ActionChains(self.browser).send_keys(Keys.ENTER).perform()
        self.wait_for("key-COMMON.ZEPH_SW_ZONE", lambda: self.run_script(FOCUS))
        self.wait_for(METHODS, self.events)
        self.assertEqual(self.find("search").get_property("value"), "")
        self.press_tab_until("#TrackSteerWheelDragBegin")

    def test_finds_words_wherever_something_is_said(self):
        for words, expected in (
            ("cv.ppr", ["TrackPPR"]),  # a name
            ("document_editing", ["StartTrackFileChange"]),  # a key
            ("entitlement_properties", ["TrackUpdateLicense"]),  # the object that holds keys
            ("documenteditinglength", ["StartTrackFileChange"]),  # a key without what divides it
            ("TRACKMESHSIZE", ["TrackMeshSize"]),  # a method
            ("std::vector<NavBarToolState>& tools", ["TrackNavBarStartup"]),  # a part of a signature
            ("steering wheel drag", ["TrackSteerWheelDragBegin"]),  # a heading, and a method
            ("jobs", ["TrackPPR"]),  # a group's note
            ("milliseconds", ["StartTrackFileChange"]),  # a unit
            ("is a serial number sent?", ["TrackUpdateLicense"]),  # a question
            ("TrackUserEvent", ["TrackUserEvent"]),  # a name, whose parts are everywhere
            ("CV.REPORT_NAME", ["TrackReport"]),
            ('"serial number"', ["TrackUpdateLicense"]),
            ("serial sender", []),
        ):
            with self.subTest(words):
                self.search(words)
                self.assertEqual(self.events(), expected)
        self.assertEqual(self.find("found").text, "Nothing found. What is not known here: Ask the maker")
        self.assertEqual(self.run_script(IDS, "main section"), ["ask"])
        self.assertEqual(len(self.run_script(TEXTS, "#ask .line")), sum(len(part["questions"]) for part in DOCUMENT["ask"]))
        self.find("all").click()
        self.wait_for(METHODS, self.events)
        self.assertEqual(self.browser.current_url, PAGE.as_uri())
        spare = DOCUMENT["unsent"][-1]["text"]
        for words, section, line in (("what has changed since 1.0.0?", "changes", ""), (f'"{spare}"', "unsent", spare)):
            self.search(words)
            self.assertEqual(self.run_script(IDS, "main section"), [section])
            self.assertTrue(self.run_script(TEXTS, f"#{section} .line")[0].startswith(line))
            self.assertIn("; also: " + self.find("heading-" + section).text.removesuffix(" #"), self.find("found").text)

    def test_answers_in_the_words_that_people_use_the_best_first(self):
        # The sections in the page's order, the event that comes first, and a key among those that are marked.
        for words, section, event, key in (
            ("serial number", "Entitlement", "TrackUpdateLicense", "entitlement_license_id"),
            ("file name", "Documents", "StartTrackFileChange", "COMMON.FILE.NAME"),
            ("filenames", "Documents", "StartTrackFileChange", "COMMON.FILE.NAME"),
            ("user name", "ask", "TrackExportPublish", "COMMON.FILE.NAME"),
            ("login", "ask", "TrackExportPublish", "COMMON.FILE.NAME"),
            ("path", "File-input", "TrackFileInput", "CV.REPORT_NAME"),
            ("pressed keys", "3Dconnexion-device", "Track3DCKeyPressed", "COMMON.ZEPH_KEY_ID"),
            ("licence", "Entitlement", "TrackUpdateLicense", "CV.LICENSE_MODE"),
            ("licenses", "Entitlement", "TrackUpdateLicense", "product_key"),
            ("machine", "about", None, None),
            ("personal data", "about", "TrackExportPublish", "product_key"),
            ("mesh previous", "Analysis-mesh-and-mould", "TrackMeshPropertyChanged", "CV.MOLD_PROPERTY_PREV_VALUE"),
            ("IP address", "ask", None, None),
            ("e-mail", "ask", None, None),
            ("opt-out", "about", None, None),
        ):
            with self.subTest(words):
                self.search(words)
                sections = self.run_script(IDS, "main > section, #events > section")
                self.assertEqual((sections[0], *self.events()[:1]), (section, *([event] if event else [])))
                self.assertIn(key, [*self.hits(), None])
        self.assertIn("ask", sections)  # for "opt-out" as well
        self.find("search").clear()
        self.find("search").send_keys(" ")
        self.assertEqual(self.events(), METHODS)

    def test_tells_which_events_are_not_wanted_any_more_on_a_day(self):
        self.run_script("TrackPPR.dataset.until = '2026-06-30'; TrackReport.dataset.until = '2026-07-01';"
                        "date.value = '2026-07-01'; date.dispatchEvent(new Event('input'))")
        self.assertEqual(self.run_script(TEXTS, "#unwanted output"), ["TrackPPR (2026-06-30)"])

    def test_prints_tables_and_payloads_on_few_pages(self):
        self.tools("Emulation.setEmulatedMedia", media="print")
        self.addCleanup(self.tools, "Emulation.setEmulatedMedia", media="")
        self.set_width(700)  # as wide as paper
        display = self.run_script("return [...document.querySelectorAll('table, tr, thead, tbody th, td')]"
                                  ".map(element => getComputedStyle(element).display)")
        self.assertEqual(set(display), {"table", "table-row", "table-header-group", "table-cell"})
        pages = base64.b64decode(self.tools("Page.printToPDF", preferCSSPageSize=True)["data"])
        self.assertIn(len(re.findall(rb"/Type /Page\n", pages)), range(10, 31))
        isOpen = "dispatchEvent(new Event(arguments[0])); return [...document.querySelectorAll('details')].every(each => each.open)"
        self.assertEqual([self.run_script(isOpen, event) for event in ("beforeprint", "afterprint")], [True, False])

    def test_filters_keys(self):
        everywhere = [(None, key) for key in DOCUMENT["common"]]
        everywhere += [(event["method"], key) for event in EVENTS for key in event["keys"]]
        filters = [{"kind": kind} for kind in ("text", "number", "flag", "product", "fixed")]
        filters += [{"sensitivity": level} for level in ("technical", "interaction", "stored content")]
        filters += [{}, {"sensitivity": "highly sensitive"}, {"personal": "yes"}, {"personal": "no", "kind": "text"}]
        for wanted in filters:
            with self.subTest(**wanted):
                self.search(**wanted)
                fitting = [(method, key["key"]) for method, key in everywhere
                           if all((key | {"personal": "yes" if key["personal_text"] else "no"})[name] == value
                                  for name, value in wanted.items())]
                shown = {method for method, _ in fitting}
                self.assertEqual(self.events(), [method for method in METHODS if method in shown])
                self.assertEqual(set(self.run_script(TEXTS, "#keys .line > a")), {key for _, key in fitting})
                rows = self.run_script(TEXTS, "article .row th a, article li.row > a")
                self.assertEqual(sorted(rows), sorted(key for method, key in fitting if method))
                self.assertEqual(bool(self.run_script(IDS, "#about, #changes, #unsent")), wanted == {})

    def test_has_a_link_for_each_search_and_goes_back_to_one(self):
        self.search("file & näme=1 +#", kind="text", personal="yes")
        address = self.find("link").get_property("href")
        self.assertEqual(self.browser.current_url, address)
        self.open(address[address.index("#"):])
        values = [self.find(name).get_property("value") for name in ("search", "kind", "sensitivity", "personal")]
        self.assertEqual(values, ["file & näme=1 +#", "text", "", "yes"])
        self.run_script("location.hash = 'q=trackmeshsize'")
        self.wait_for(["TrackMeshSize"], self.events)
        self.browser.back()
        self.wait_for("file & näme=1 +#", lambda: self.find("search").get_property("value"))
        self.open()
        self.run_script("location.hash = 'kind=flag'")
        self.wait_for("flag", lambda: self.find("kind").get_property("value"))
        self.browser.back()
        self.wait_for("", lambda: self.find("kind").get_property("value"))
        self.wait_for(METHODS, self.events)

    def test_offers_the_files_beside_it(self):
        with tempfile.TemporaryDirectory() as folder:
            self.tools("Browser.setDownloadBehavior", behavior="allow", downloadPath=folder)
            for name, file in (("as-json", "events.json"), ("as-table", "events.csv")):
                self.find(name).click()
                made, expected = Path(folder) / file, PAGE.with_name(file).read_bytes()
                self.wait_for(True, lambda made=made, size=len(expected): made.exists() and made.stat().st_size >= size)
                self.assertTrue(made.read_bytes() == expected, f"{file} is not what the page offers")

    def test_can_be_read_without_scripts(self):
        self.tools("Emulation.setScriptExecutionDisabled", value=True)
        self.addCleanup(self.tools, "Emulation.setScriptExecutionDisabled", value=False)
        self.open()
        self.assertTrue(all(self.find(method).is_displayed() for method in METHODS))
        self.assertFalse(self.browser.find_element(By.TAG_NAME, "form").is_displayed())
        self.assertEqual(self.find("as-json").get_dom_attribute("href"), "events.json")
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "details:not([open])"), [])

    def test_can_be_read_in_both_schemes_and_on_a_narrow_screen(self):
        for scheme in ("light", "dark"):
            self.tools("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
            self.search("tool", kind="flag")
            self.run_script("location.hash = 'TrackNavBarToolClicked'")
            self.wait_for(["TrackNavBarToolClicked"], lambda: self.run_script(IDS, ":target"))
            backs = [luminance(self.run_script(COLOUR, element, "backgroundColor"))
                     for element in ("body", "pre", "select", ":target", ".hit")]
            for element in ("body", "article a", "thead th", "#found", "#link", "pre", "input", "small", ".rest"):
                text = luminance(self.run_script(COLOUR, element, "color"))
                self.assertEqual(text < backs[0], scheme == "light")
                for back in backs:
                    contrast = (max(text, back) + 0.05) / (min(text, back) + 0.05)
                    self.assertGreaterEqual(contrast, LEAST_CONTRAST, f"{element}, {scheme}")
        self.set_width(360)
        for end in ("", "#TrackSteerWheelLoadOption", "#q=tool&sensitivity=highly+sensitive", "#q=" + "w" * 200):
            self.open(end)
            self.assertLessEqual(self.run_script("return document.documentElement.scrollWidth"), 360, end)
        self.run_script("scrollTo(0, document.body.scrollHeight)")
        self.find("search").send_keys("file")
        self.wait_for(0, lambda: self.run_script("return scrollY"))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
