"""Photographs documents with headless Chromium, in exactly the size wanted."""

import contextlib
import os
import tempfile
from pathlib import Path

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.chrome.service import Service

from receiver.options import UsageError
from receiver.web import html

FLAGS = ("--headless", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
         "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage", "--hide-scrollbars")
BROWSER, DRIVER = "/usr/bin/chromium", "/usr/bin/chromedriver"
PAGES = html.PAGE.parent.as_uri() + "/"


@contextlib.contextmanager
def browser():
    """A headless Chromium with a profile of its own, as Selenium's driver. It ends with the block. UsageError without one."""
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        options = webdriver.ChromeOptions()
        options.binary_location = BROWSER
        for flag in (*FLAGS, "--user-data-dir=" + profile, *(["--no-sandbox"] if os.geteuid() == 0 else [])):
            options.add_argument(flag)
        try:
            driver = webdriver.Chrome(options=options, service=Service(DRIVER))
        except WebDriverException as error:
            raise UsageError("--shot: Chromium does not start: %s" % error.msg) from error
        try:
            yield driver
        finally:
            driver.quit()


def photograph(driver, document, width, height):
    """A document of receiver.web.html as the bytes of a PNG of that size."""
    with tempfile.TemporaryDirectory() as folder:
        page = Path(folder) / "page.html"
        page.write_text(document, encoding="utf-8")
        driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
        driver.get(page.as_uri())
        driver.execute_async_script("document.fonts.ready.then(arguments[0])")
        return driver.get_screenshot_as_png()
