"""The page in a browser: it does with files what the program does, shows where all of it comes from, and sends nothing.

    page_test.py PAGE PROGRAM [FOLDER...]

Every file below the folders gives what the program writes of it. Screenshots are put into
the folder screenshots beside that of PAGE.
"""

import functools
import http.server
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
from browser import Browser  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = PROGRAM = None
FOLDERS = []
DATABASES = (".tlsv", ".mdb", ".accdb")
VIEWS = {"json": "json", "csv": "csv", "points": "points.csv", "dxf": "dxf", "svg": "svg"}


def written(view, file, *options):
    run = subprocess.run([PROGRAM, *options, "--to", view, file.name], cwd=file.parent, capture_output=True, check=False)
    return run.stdout


def large_gsi(file, size):
    """A file of that size: one station, and as many points as there are room for."""
    line = "110003+{:08d} 21.322+{:08d} 22.322+09981230 31..00+00085412 87..10+00001600\r\n"
    with open(file, "w", encoding="ascii", newline="") as out:
        out.write("410001+00000030 42....+0000S100 43....+0000STAZ 44....+00001552\r\n")
        out.writelines(line.format(i % 100000000, i * 37 % 40000000) for i in range(1, size // 82))


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.work = pathlib.Path(cls.folder.name)
        downloads = cls.work / "downloads"
        downloads.mkdir()
        cls.page = Browser(PAGE.as_uri(), downloads)

    @classmethod
    def tearDownClass(cls):
        cls.page.quit()
        cls.folder.cleanup()

    def tearDown(self):
        self.assertEqual(self.page.complaints(), [])
        others = [url for url in self.page.requests() if not url.startswith(("blob:", PAGE.as_uri(), "data:,"))]
        self.assertEqual(others, [], "requests to elsewhere")
        self.page.remove_all()

    def put(self, name, content):
        file = self.work / name
        file.write_bytes(content if isinstance(content, bytes) else content.encode("cp1252"))
        return file

    def look(self, name):
        folder = PAGE.parent.with_name("screenshots")
        folder.mkdir(exist_ok=True)
        self.page.driver.save_screenshot(str(folder / f"{name}.png"))

    def check_outputs(self, file, views, *options):
        stem = file.name.rpartition(".")[0] or file.name
        for view in views:
            with self.subTest(file=file.name, view=view):
                name, content = self.page.download(view)
                if "<" not in stem: # the browser has names of its own for such a file
                    self.assertEqual(name, f"{stem}.{VIEWS[view]}")
                self.assertEqual(content, written(view, file, *options))

    def test_every_file_gives_what_the_program_writes(self):
        days = [file for file in sorted(ROOT.glob("tests/golden/*/day.*"))
                if file.suffix not in (".json", *DATABASES)]
        others = [file for folder in FOLDERS for file in sorted(folder.rglob("*"))
                  if file.is_file() and file.suffix not in DATABASES]
        self.assertGreater(len(days), 20)
        for files, views in ((days, VIEWS), (others, ["json"])):
            for at in range(0, len(files), 20):
                some = files[at:at + 20]
                self.page.choose(*some)
                self.page.converted()
                for i, file in enumerate(some):
                    self.page.select(i)
                    self.assertEqual(self.page.text("#name"), file.name)
                    converted = self.page.js("return !document.getElementById('state').classList.contains('bad')")
                    self.check_outputs(file, views if converted else ["json"])
                self.page.remove_all()

    def test_a_format_and_the_complete_reading_are_chosen(self):
        file = self.put("day.txt", (ROOT / "samples/day.gsi").read_bytes())
        self.page.choose(file)
        self.page.converted()
        self.assertIn("read as gsi, by its content", self.page.text("#state"))
        self.page.by_id("complete").click()
        self.page.converted()
        self.check_outputs(file, ["json", "csv"], "--complete")
        self.page.js("const f = document.getElementById('format'); f.value = 'mwg'; f.dispatchEvent(new Event('change'))")
        self.page.wait(lambda: "read as mwg" in self.page.text("#state"), "read as mwg")
        self.page.converted()
        self.check_outputs(file, ["json"], "--complete", "--format", "mwg")

    def test_remarks_table_drawing_and_lines_show_each_other(self):
        page = self.page
        page.choose(ROOT / "samples/day.gsi")
        page.converted()
        page.wait(lambda: page.js("return document.querySelector('#drawing img').naturalWidth"), "the drawing is there")
        self.look("page")
        # a remark
        button = page.js("return [...document.querySelectorAll('#remarks .line')].find((b) => b.textContent === '28')")
        button.click()
        line = page.wait(lambda: page.row("lines"), "its line is marked")
        self.assertEqual(line[0], "28")
        # a row
        page.js("document.getElementById('table').scrollTop = 0")
        page.wait(lambda: page.all("#row-2"), "the first rows are in view")
        page.js("[...document.querySelectorAll('#table .point')].find((r) => r.children[1].textContent === '8').click()")
        page.wait(lambda: page.row("lines")[0] == "8", "the row's line is marked")
        self.assertEqual(page.row("table")[2], "4")
        page.wait(lambda: not page.js("return document.querySelector('.ring').hidden"), "its place is marked")
        # its place in the drawing, from another row
        x, y = page.js("const b = document.querySelector('.ring').getBoundingClientRect();"
                       "return [b.left + b.width / 2, b.top + b.height / 2]")
        page.js("document.querySelector('#table .station').click()")
        page.wait(lambda: page.row("lines")[0] == "2", "the station's line is marked")
        page.js("document.querySelector('#drawing img').dispatchEvent(new MouseEvent('click',"
                " {clientX: arguments[0], clientY: arguments[1], bubbles: true}))", x, y)
        page.wait(lambda: page.row("lines")[0] == "8" and page.row("table")[1] == "8", "the click finds its line and row")
        # a line
        page.js("[...document.querySelectorAll('#lines .row')].find((r) => r.children[0].textContent === '7').click()")
        page.wait(lambda: page.row("table")[1] == "7", "the line's row is marked")

    def test_keys_do_what_the_mouse_does(self):
        page = self.page
        page.choose(ROOT / "samples/day.gsi")
        page.converted()
        page.wait(lambda: page.all("#table .point"), "the table is there")
        table = page.by_id("table")
        table.send_keys("\ue015" * 3)  # arrow down
        page.wait(lambda: (page.row("table") or ["", ""])[1] == "4", "the third row is marked")
        self.assertEqual(page.row("lines")[0], "4")
        active = table.get_attribute("aria-activedescendant")
        self.assertEqual(page.by_id(active).get_attribute("aria-selected"), "true")
        table.send_keys("\ue010")  # end
        page.wait(lambda: page.row("table")[0] == "Point" and page.row("lines")[0] == page.row("table")[1], "the last row")
        page.by_id("lines").send_keys("\ue011\ue015")  # home, arrow down
        page.wait(lambda: page.row("lines")[0] == "2" and page.row("table")[0] == "Station", "the second line")
        names = page.js("return [...document.querySelectorAll('button, input, select, [tabindex]')]"
                        ".map((e) => (e.ariaLabel || e.textContent || e.labels?.[0]?.textContent"
                        "  || document.getElementById(e.getAttribute('aria-labelledby'))?.textContent || '').trim())")
        self.assertNotIn("", names, "something has no name for who does not see it")

    def test_texts_of_a_file_are_never_markup(self):
        markup = "<img src=x onerror=window.hit=1>"
        content = f"00NMSDR33V04-04.02     {'x':16}121111\r\n10NM{'<b>job</b>':16}\r\n" \
                  f"02TP{'</td><script>':16}{'1':16}{'2':16}{'3':16}{'1.5':16}{markup[:16]}\r\n" \
                  f"09F1{'</td><script>':16}{'<svg onload=1>':16}{'10.0':16}{'90.0':16}{'45.0':16}{markup}\r\n"
        file = self.put(f"{markup.replace('/', '')} & 'quoted'.sdr", content)
        self.page.choose(file)
        self.page.converted()
        self.assertEqual(self.page.text("#name"), file.name)
        self.page.wait(lambda: "<svg onload=1>" in (self.page.text("#table .point") or ""), "the name is a text")
        self.page.wait(lambda: "<svg onload=1>" in self.page.text("#lines"), "the line is a text")
        self.assertEqual(self.page.all("main img:not(#drawing img), main b, main svg, main script"), [])
        self.assertIsNone(self.page.js("return window.hit ?? null"))
        self.check_outputs(file, ["json", "svg"])

    def test_what_cannot_be_converted_says_why(self):
        prose = self.put("letter.txt", "Dear colleague,\r\nthis is no download of an instrument.\r\n" * 40)
        empty = self.put("empty.gsi", "")
        picture = self.put("site.mts", b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 20)
        database = self.put("job.tlsv", b"\0\1\0\0Standard Jet DB\0" + bytes(4072))
        too_large = self.work / "huge.gsi"
        with open(too_large, "wb") as file:
            file.truncate(5 << 30)
        for file, says in ((prose, "no format fits"), (empty, "the file is empty"), (picture, "no format fits"),
                           (database, "a browser cannot read it"), (too_large, "too large for this browser")):
            with self.subTest(file=file.name):
                self.page.choose(file)
                self.page.converted()
                self.assertIn(says, self.page.text("#state"))
                self.page.remove_all()
        too_large.unlink()

    def test_files_and_folders_are_dropped(self):
        folder = self.work / "jobs"
        (folder / "north").mkdir(parents=True)
        for name in ("site.gsi", "north/site.gsi"):
            (folder / name).write_bytes((ROOT / "samples/day.gsi").read_bytes())
        self.page.drop(ROOT / "samples/farm.gsi", folder)
        self.page.wait(lambda: len(self.page.all("#files li")) == 3, "all of them are there")
        self.page.converted()
        names = self.page.js("return [...document.querySelectorAll('#files .name')].map((name) => name.textContent)")
        self.assertEqual(sorted(names), ["farm.gsi", "jobs/north/site.gsi", "jobs/site.gsi"])
        self.assertIn("read as gsi", self.page.text("#state"))

    def test_a_file_that_is_not_what_it_was_says_so(self):
        files = [self.put(f"{i}.gsi", (ROOT / "samples/day.gsi").read_bytes()) for i in range(6)]
        self.page.choose(*files)
        self.page.converted()
        self.page.select(5)
        files[1].write_bytes(b"shorter")
        files[2].unlink()
        for i in (1, 2):
            self.page.select(i)
            self.page.wait(lambda: "choose it again" in self.page.text("#state"), "it says so")
        self.page.select(3)
        self.page.wait(lambda: self.page.all("#table .point"), "another one is read anew")

    def test_what_is_chosen_meanwhile_counts(self):
        page = self.page
        large = self.work / "meanwhile.gsi"
        large_gsi(large, 10_000_000)
        small = ROOT / "tests/golden/mts/day.mts"
        page.choose(large)
        page.by_id("complete").click()  # while it converts
        page.converted()
        self.assertTrue(page.by_id("complete").is_selected())
        self.check_outputs(large, ["csv"], "--complete")
        page.by_id("complete").click()
        page.remove_all()  # while it converts again
        page.choose(small)
        page.converted()
        self.assertEqual(len(page.all("#files li")), 1)
        # Its records are no lines: nothing leads to one.
        page.wait(lambda: page.all("#table .point"), "its table is there")
        page.js("document.querySelector('#table .point').click()")
        page.wait(lambda: page.row("table"), "its row is marked")
        self.assertEqual(page.all("#lines .row"), [])
        self.assertIn("no lines", page.text("#raw-note"))

    def test_a_large_file_leaves_the_page_alive(self):
        file = self.work / "large.gsi"
        large_gsi(file, 50_000_000)
        began = time.monotonic()
        expected = written("json", file)
        program = time.monotonic() - began
        # The longest that the page did nothing else.
        self.page.js("window.longest = 0; let last = performance.now();"
                     "window.beat = setInterval(() => { const now = performance.now();"
                     "  window.longest = Math.max(window.longest, now - last); last = now; }, 10)")
        began = time.monotonic()
        self.page.choose(file)
        self.page.converted(120)
        shown = time.monotonic() - began
        self.page.wait(lambda: self.page.all("#table .point"), "the table is there")
        began = time.monotonic()
        _, content = self.page.download("json")
        downloaded = time.monotonic() - began
        longest = self.page.js("clearInterval(window.beat); return window.longest")
        self.assertTrue(content == expected, "the book of a large file")
        points = content.count(b'"slope_distance"')
        rows = int(self.page.by_id("table").get_attribute("aria-rowcount")) - 1
        self.assertEqual(rows, points + 2)  # and job and station
        self.assertLess(len(self.page.all("#table .row")), 200)
        self.page.by_id("table").send_keys("\ue010")
        self.page.wait(lambda: (self.page.row("lines") or [""])[0] == str(points + 1), "the last line")
        self.page.js("document.getElementById('table').scrollTop = 4e6")
        self.page.wait(lambda: not self.page.all("#table .pending") and self.page.all("#table .point"), "the middle")
        self.assertLess(longest, 1000, "the page was frozen")
        print(f"\n50 MB, {points} points: the program {program:.1f} s; shown after {shown:.1f} s, JSON {downloaded:.1f} s;"
              f" the page never stood still for more than {longest:.0f} ms")

    def test_it_fits_narrow_screens_and_dark_ones(self):
        page = self.page
        page.choose(ROOT / "samples/day.gsi", ROOT / "tests/golden/sdr33/day.sdr")
        page.converted()
        page.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": 360, "height": 740, "deviceScaleFactor": 2, "mobile": True})
        page.driver.execute_cdp_cmd("Emulation.setEmulatedMedia",
                                    {"features": [{"name": "prefers-color-scheme", "value": "dark"}]})
        time.sleep(0.5)
        self.look("page-narrow-dark")
        self.assertLessEqual(page.js("return document.documentElement.scrollWidth"), 360)
        page.driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})
        time.sleep(0.3)
        self.look("page-dark")
        page.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})

    def test_it_works_from_a_web_server_and_asks_for_nothing_more(self):
        asked = []

        class Handler(http.server.SimpleHTTPRequestHandler):
            def log_message(self, *_):
                asked.append(self.path)

        handler = functools.partial(Handler, directory=PAGE.parent)
        with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            address = f"http://127.0.0.1:{server.server_port}/{PAGE.name}"
            try:
                self.page.open(address)
                self.page.choose(ROOT / "samples/day.gsi")
                self.page.converted()
                self.assertIn("read as gsi", self.page.text("#state"))
                self.check_outputs(ROOT / "samples/day.gsi", VIEWS)
                refused = self.page.driver.execute_async_script(
                    "const done = arguments[0]; fetch('/other').then(() => done(false), () => done(true))")
                self.assertTrue(refused, "the policy lets the page ask for something")
                self.assertEqual(asked, [f"/{PAGE.name}"])
                self.page.complaints()  # of that refusal
                self.page.requests()
            finally:
                server.shutdown()
                self.page.open(PAGE.as_uri())


if __name__ == "__main__":
    PAGE, PROGRAM = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    FOLDERS = [ROOT / "samples", *(pathlib.Path(argument) for argument in sys.argv[3:])]
    os.environ.setdefault("LC_ALL", "C.UTF-8")
    unittest.main(argv=[sys.argv[0]])
