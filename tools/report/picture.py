"""picture.py ZRBENCH DEVICE PICTURE: what a report of the device file looks like, as PNG."""
import base64
import os
import subprocess
import sys
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

zrbench, device, picture = sys.argv[1:]
options = webdriver.ChromeOptions()
for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars"):
    options.add_argument(argument)
with tempfile.TemporaryDirectory() as folder, \
        webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver")) as browser:
    page = os.path.join(folder, "page.html")
    subprocess.run([zrbench, "--quiet", "run", device, "--report", page], check=True)
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                            {"width": 1600, "height": 1150, "deviceScaleFactor": 0.75, "mobile": False})
    browser.get(f"file://{page}")
    # From now on the same picture, whenever it is taken.
    browser.execute_script("const made = document.querySelector('header .sub'); "
                           "made.textContent = made.textContent.replace(/ · [^·]* UTC$/, '')")
    shot = browser.execute_cdp_cmd("Page.captureScreenshot", {"format": "png"})
with open(picture, "wb") as file:
    file.write(base64.b64decode(shot["data"]))
