"""browser.py ZRBENCH EXAMPLES [FOLDER]: reports as a person meets them in a browser; screenshots go to FOLDER. Ends with 77
where there is no browser."""
import base64
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.select import Select
except ImportError as error:
    print("skipped:", error)
    sys.exit(77)
if not shutil.which("chromium") or not shutil.which("chromedriver"):
    print("skipped: no chromium")
    sys.exit(77)

ZRBENCH, EXAMPLES = (os.path.abspath(sys.argv.pop(1)) for _ in range(2))
SHOTS = sys.argv.pop(1) if len(sys.argv) > 1 else None
HOSTILE = "<script>document.title = 'taken'</script></script><img src=x onerror=\"document.title = 'taken'\">&lt;\u2028"


def zrbench(*arguments, status=0, text=None):
    ended = subprocess.run([ZRBENCH, *arguments], input=text, capture_output=True, text=True, check=False)
    assert ended.returncode == status, ended.stdout + ended.stderr
    return ended.stdout


def units_of(state):
    return [unit for unit in state["board"]["units"].values() if not unit["inReset"]]


class ReportTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        cls.browser = webdriver.Chrome(options=options, service=Service(shutil.which("chromedriver")))
        cls.addClassCleanup(cls.browser.quit)

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [])

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "w", encoding="utf-8") as file:
            json.dump(content, file)
        return self.path(name)

    def open(self, page, width=1600, dark=False, height=1000):
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
        self.browser.get(f"file://{page}")

    def run_file(self, file, status=0):
        """Runs a device file and opens its report; its steps and final state."""
        page, dump = self.path("page.html"), self.path("dump.json")
        told = zrbench("--json", "--dump", dump, "run", file, "--report", page, status=status)
        self.open(page)
        with open(dump, encoding="utf-8") as state:
            return [json.loads(line) for line in told.strip().split("\n")][:-1], json.load(state)

    def all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def count(self, selector):
        return self.browser.execute_script("return document.querySelectorAll(arguments[0]).length", selector)

    def type(self, selector, text):
        field = self.one(selector)
        field.clear()
        field.send_keys(text)

    def check_state(self, state):
        units = units_of(state)
        self.assertEqual(self.count("#panels .port"), sum(len(unit["ports"]["port"]) for unit in units))
        up = sum(port["enabled"] and port["link"] != "down" for unit in units for port in unit["ports"]["port"].values())
        self.assertEqual(self.count("#panels .port .up"), up)
        self.assertEqual(self.count("#panels .cable"), len(state["board"].get("cables", {})))
        vlans = {vlan for unit in units for vlan in unit.get("vlan", {}).get("vlans", {})}
        self.assertEqual({row.get_attribute("data-vlan") for row in self.all("#vlans tbody tr")}, vlans)
        rules = sum(len(unit.get("acl", {}).get("rules", [])) for unit in state["library"]["units"].values())
        self.assertEqual(self.count("#acl tr.rule"), rules)
        addresses = sum(len(unit.get("mac", {}).get("entries", [])) for unit in units)
        self.assertEqual(self.count("#addresses tr[data-mac]"), addresses)

    def test_a_page_has_everything_that_the_run_left(self):
        for name in ("gateway", "switching"):
            with self.subTest(name):
                steps, state = self.run_file(f"{EXAMPLES}/{name}.json")
                self.assertLess(os.path.getsize(self.path("page.html")), 500_000)
                self.assertEqual(self.browser.execute_script("return performance.getEntriesByType('resource').length"), 0)
                self.check_state(state)
                self.one("#open-steps").click()
                self.assertEqual(self.count("#steps li.step"), len(steps))
                refused = [step for step in steps for run in step.get("runs", [step]) if run.get("status")]
                self.assertEqual(self.count("#steps .dot.warn"), len(refused))
                ways = [step for step in steps for run in step.get("runs", [step])[:1] if "frame" in run["command"]]
                self.assertEqual(self.count("#frame-list [data-frame]"), len(ways))

    def test_earlier_states_are_those_of_the_run(self):
        self.run_file(f"{EXAMPLES}/gateway.json")
        with open(f"{EXAMPLES}/gateway.json", encoding="utf-8") as file:
            device = json.load(file)
        ends = [i for i, step in enumerate(device["steps"]) if i > 0 and isinstance(step, dict) and "say" in step]
        names = [option.text for option in self.all("#moment option")]
        self.assertEqual(len(names), len(ends) + 1)
        for place in (5, len(ends) - 1):
            short = self.write("short.json", {**device, "steps": device["steps"][:ends[place]]})
            zrbench("--quiet", "--dump", self.path("short.dump"), "run", short)
            Select(self.one("#moment")).select_by_visible_text(names[place])
            with open(self.path("short.dump"), encoding="utf-8") as state:
                self.check_state(json.load(state))

    def test_a_frame_is_followed_to_where_it_ends(self):
        self.run_file(f"{EXAMPLES}/switching.json")
        self.assertEqual(self.count("#frame [data-way]"), 2)
        self.assertEqual({out.get_attribute("data-out") for out in self.all("#frame [data-out]")},
                         {"0/1", "0/15", "1/0", "1/1", "1/4", "2/0", "2/2", "2/3"})
        self.type("#frame-search", "telnet l4Dst=23")
        self.assertEqual(self.count("#frame-list [data-frame]"), 0)
        self.type("#frame-search", "l4Dst=23")
        self.one("#frame-list [data-frame]").send_keys(Keys.ENTER)
        self.assertEqual(self.one("#frame-result").text, "✗ dropped: acl")
        self.assertEqual(self.one("#frame [data-dropped]").text, "dropped: acl")
        self.assertIn("entry 17 drops", self.one("#frame .hop").text)
        # One of many that a step sent.
        self.type("#frame-search", "l4Src=$n")
        self.one("#frame-list [data-frame]").click()
        self.one("#frame-run").send_keys(Keys.CONTROL, "a", Keys.NULL, "64", Keys.TAB)
        self.assertIn("5063", self.one("#frame h3").text)

    def test_addresses_and_steps_are_searched(self):
        self.run_file(f"{EXAMPLES}/switching.json")
        self.type("#address-search", "00:21 port 2")
        self.assertEqual(self.count("#addresses tr[data-mac]"), 1)
        self.type("#address-search", "static")
        self.assertEqual(self.count("#addresses tr[data-mac]"), 1)
        self.type("#step-search", "no vlan is called that")
        self.assertIn("No step", self.one("#steps").text)
        self.type("#step-search", "storm set")
        self.assertEqual(self.count("#steps li.step"), 1)

    def test_ports_and_vlans_are_chosen_by_keyboard(self):
        self.run_file(f"{EXAMPLES}/switching.json")
        self.one("#vlan-choice").send_keys(Keys.TAB)
        active = self.browser.switch_to.active_element
        active.send_keys(Keys.ARROW_RIGHT)
        self.browser.switch_to.active_element.send_keys(Keys.ENTER)
        self.assertIn("Port 1 of unit 0", self.one("#port-facts").text)
        self.assertIn("blocking in instance 1", self.one("#port-facts").text)
        self.one("#vlans tr[data-vlan='20'] button").send_keys(Keys.ENTER)
        inside = self.count("#panels .port:not(.out)")
        self.assertEqual(inside, 10)
        self.assertEqual(self.one("#panels [data-port='1/15'] .v").text, "T")

    def test_nothing_is_one_line(self):
        _, state = self.run_file(self.write("empty.json", {}))
        self.assertEqual(units_of(state), [])
        for part in ("frames", "vlans", "addresses", "limits", "counters", "steps"):
            self.assertEqual(len(self.all(f"#{part} .none")), 1, part)
            self.assertEqual(self.count(f"#{part} table"), 0)
        # A dump has no steps.
        zrbench("report", self.path("dump.json"), self.path("page.html"))
        self.open(self.path("page.html"))
        self.assertIn("made of a dump", self.one("#steps .none").text)

    def test_a_failing_run_leads_to_what_failed_and_why(self):
        self.run_file(self.write("failing.json", {"steps": [*({"do": "chip init 0"} for _ in range(50)), "vlan create 0 5000"]}), status=1)
        self.assertIn("1 of 51 steps not as expected", self.one("#verdict").text)
        self.one("#head a").click()
        step = self.one("#step-51").text
        self.assertIn("Not as expected: expected status 0", step)
        self.assertIn("retVal:0x10003", step)
        self.assertIn("Look first:", step)

    def test_text_stays_text(self):
        self.run_file(self.write("hostile.json", {"about": HOSTILE, "steps": [
            {"say": HOSTILE}, {"do": "chip init 0", "note": HOSTILE}, {"do": "frame send 0 0 arp=request", "note": HOSTILE},
            {"do": "explain 1", "shows": [HOSTILE]}, {"do": "checkpoint <script>alert(1)</script>"}]}), status=1)
        self.assertEqual(self.count("script"), 2)
        self.assertEqual(self.count("img"), 0)
        self.assertNotEqual(self.browser.title, "taken")
        shown = "document.querySelector(arguments[0]).textContent"
        for place in ("h1", "#steps .sec summary", "#steps .note", "#frame em"):
            self.assertIn(HOSTILE, self.browser.execute_script(f"return {shown}", place))
        self.assertIn("<script>alert(1)</script>", self.browser.execute_script(f"return {shown}", "#step-4"))

    def test_full_tables_open_and_scroll_at_once(self):
        zrbench("--quiet", "--dump", self.path("dump.json"), "run", f"{EXAMPLES}/switching.json")
        with open(self.path("dump.json"), encoding="utf-8") as file:
            state = json.load(file)
        for unit in units_of(state):
            unit["vlan"]["vlans"] = {str(vlan): {"members": [0, 1, 2, 3, 4, 15], "untagged": [vlan % 5]} for vlan in range(1, 4095)}
            unit["mac"]["entries"] = [{"index": i, "mac": f"02:00:00:00:{i >> 8:02x}:{i & 255:02x}", "vlan": 1 + i, "port": i % 5,
                                       "static": False, "age": i % 300} for i in range(2112)]
        zrbench("report", self.write("full.json", state), self.path("page.html"))
        self.open(self.path("page.html"))
        timing = self.browser.execute_script("const t = performance.getEntriesByType('navigation')[0]; return t.domComplete")
        scroll = self.browser.execute_async_script("""
            const done = arguments[0], box = document.querySelector('#vlans .tablebox');
            let longest = 0, at = 0, last = performance.now();
            const tick = () => { const now = performance.now(); longest = Math.max(longest, now - last); last = now;
              if (++at > 60) return done([longest, box.innerText.includes('4094')]);
              box.scrollTop = at * box.scrollHeight / 60; requestAnimationFrame(tick); };
            requestAnimationFrame(tick);""")
        print(f"full tables: opened in {timing:.0f} ms, longest frame of scrolling {scroll[0]:.0f} ms")
        self.assertTrue(scroll[1])
        self.assertLess(timing, 3000)
        self.assertLess(scroll[0], 300)
        self.type("#address-search", "08:3f unit 1")
        self.assertEqual(self.one("#address-count").text, "1 of 6336")

    def test_every_width_and_scheme(self):
        for name in ("gateway", "switching"):
            page = self.path(f"{name}.html")
            zrbench("--quiet", "run", f"{EXAMPLES}/{name}.json", "--report", page)
            for width in (390, 1600):
                for dark in (False, True):
                    self.open(page, width, dark)
                    self.assertLessEqual(self.browser.execute_script("return document.documentElement.scrollWidth"), width)
                    ground = self.browser.execute_script("return getComputedStyle(document.body).backgroundColor")
                    self.assertEqual(ground == "rgb(255, 255, 255)", not dark)
                    if SHOTS:
                        os.makedirs(SHOTS, exist_ok=True)
                        self.open(page, width, dark, self.browser.execute_script("return document.documentElement.scrollHeight"))
                        shot = self.browser.execute_cdp_cmd("Page.captureScreenshot", {"format": "png"})["data"]
                        with open(f"{SHOTS}/{name}-{width}-{'dark' if dark else 'light'}.png", "wb") as file:
                            file.write(base64.b64decode(shot))
            self.assertGreater(len(self.browser.execute_cdp_cmd("Page.printToPDF", {})["data"]), 10000)

    def test_a_shell_writes_what_was_done_so_far(self):
        page = self.path("shell.html")
        zrbench("shell", "--up", "-c", f"vlan create 0 77; expect 1 chip init 3; report {page}; vlan delete 0 77")
        self.open(page)
        self.assertEqual(self.count("#steps li.step"), 2)
        self.assertEqual(self.count("#vlans tr[data-vlan='77']"), 1)


if __name__ == "__main__":
    result = unittest.main(exit=False).result
    if report := os.environ.get("GTEST_OUTPUT", "").removeprefix("xml:"):
        os.makedirs(os.path.dirname(report), exist_ok=True)
        with open(report, "w", encoding="ascii") as counts:
            counts.write(f'<testsuites tests="{result.testsRun}" failures="{len(result.failures)}" '
                         f'errors="{len(result.errors)}"/>\n')
    sys.exit(not result.wasSuccessful())
