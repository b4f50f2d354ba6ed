"""A headless Chromium with the page in it."""

import json
import pathlib
import time

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

ARGUMENTS = """--headless=new --no-sandbox --disable-dev-shm-usage --disable-gpu --disable-quic --no-first-run --disable-sync
    --disable-background-networking --disable-component-update --window-size=1400,1000"""


class Browser:
    def __init__(self, page, downloads):
        options = Options()
        for argument in ARGUMENTS.split():
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.downloads = pathlib.Path(downloads)
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.driver.set_script_timeout(120)
        self.driver.execute_cdp_cmd(
            "Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": str(downloads)})
        self.open(page)

    def open(self, page):
        self.driver.get(page)
        self.wait(lambda: self.by_id("choose").is_enabled(), "the page is loaded")

    def quit(self):
        self.driver.quit()

    def by_id(self, name):
        return self.driver.find_element(By.ID, name)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.js("return document.querySelector(arguments[0])?.textContent ?? null", selector)

    def js(self, code, *arguments):
        return self.driver.execute_script(code, *arguments)

    def wait(self, holds, what, seconds=60):
        end = time.monotonic() + seconds
        while True:
            value = holds()
            if value:
                return value
            if time.monotonic() > end:
                raise AssertionError(f"not in {seconds} s: {what}")
            time.sleep(0.02)

    def choose(self, *files):
        self.by_id("choose").send_keys("\n".join(str(file) for file in files))

    def drop(self, *files):
        """As somebody does it with the mouse: files, and folders."""
        data = {"items": [], "files": [str(file) for file in files], "dragOperationsMask": 1}
        for kind in ("dragEnter", "dragOver", "drop"):
            self.driver.execute_cdp_cmd("Input.dispatchDragEvent", {"type": kind, "x": 100, "y": 90, "data": data})

    def converted(self, seconds=60):
        """Waits until nothing is converted any more."""
        self.wait(lambda: self.js(
            "return [...document.querySelectorAll('#files li')].every("
            "  (item) => !['waiting', 'converting'].includes(item.className))"
            "  && document.getElementById('progress').hidden"), "all files are converted", seconds)

    def select(self, index):
        self.js("document.querySelectorAll('#files .file')[arguments[0]].click()", index)
        self.converted()

    def remove_all(self):
        self.js("document.querySelectorAll('#files .remove').forEach((button) => button.click())")

    def download(self, view):
        """What the button gives: its name and its bytes."""
        # A real click: of what a script does the browser saves ten files, and no more. Now and then it loses one that
        # the page has handed over.
        file = None
        for _ in range(3):
            self.driver.find_element(By.CSS_SELECTOR, f"#downloads [data-view={view}]").click()
            try:
                file = self.wait(self.finished_download, f"{view} is there", 15)
                break
            except AssertionError:
                assert "is saved" in self.text("#said"), self.text("#said")
        assert file, f"{view} did not come"
        content = file.read_bytes()
        file.unlink()
        return file.name, content

    def finished_download(self):
        for file in self.downloads.iterdir():
            # What has another name, or holds nothing yet, is being written.
            if not file.name.startswith(".") and file.suffix != ".crdownload" and file.stat().st_size > 0:
                return file
        return None

    def row(self, name):
        """The cells of the row under the cursor of the table, or of the lines."""
        return self.js(
            "const row = document.querySelector(`#${arguments[0]} .space .active`);"
            "return row && [...row.children].map((cell) => cell.textContent)", name)

    def requests(self):
        """The addresses that were asked for since the last time."""
        asked = []
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] in ("Network.requestWillBeSent", "Network.webSocketCreated"):
                asked.append(message["params"].get("request", message["params"])["url"])
        return asked

    def complaints(self):
        return [entry["message"] for entry in self.driver.get_log("browser")]
