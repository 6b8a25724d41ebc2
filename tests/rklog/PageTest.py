#!/usr/bin/env python3
"""The page of a log of 50,000 entries in a real browser: PageTest.py path/to/rklog. Exits with 77 where there is no Chromium."""

import subprocess
import sys
from pathlib import Path

sys.path.append(f'{Path(__file__).parent}/../support')
from Browser import browser_and_folder

HOSTILE = '</script><script>document.title="evil"</script><b id="evil">&</b> ENTRIES NONCE'

# Uses the page as a person would, and tells what it shows.
USE = r'''const done = arguments[0], told = [], rowCounts = [];
const tell = () => { told.push(byId("found").value); rowCounts.push(byId("rows").children.length); };
const enter = (id, value) => { byId(id).value = value; document.forms[0].dispatchEvent(new Event("input")); tell(); };
const rowText = i => [...byId("rows").children].at(i).innerText.replace(/\s+/g, " ").trim();
const bars = id => [...byId(id).children].map(bar => bar.innerText.replace(/\s+/g, " ").trim()).join(", ");
tell();
told.push(bars("levels"), bars("categories"), byId("minutes").children.length + " minutes");
enter("level", "=Warning");
told.push(rowText(0), bars("levels"));
byId("rows").children[0].click();
told.push(byId("details").textContent.split("\n").at(-1));
enter("search", "ÜBERLAUF");
byId("regex").checked = true;
enter("search", "^.berl(auf|ager)$");
enter("search", "(");
told.push(byId("search").validationMessage !== "");
byId("minutes").children[0].click();
document.forms[0].reset();
setTimeout(() => {
    byId("view").scrollTop = 1e9;
    showRows();
    told.push(rowText(-1));
    tell();
    done([[...told, document.title, document.getElementById("evil"), document.images.length], Math.max(...rowCounts)]);
}, 100);'''

SHOWN = ['50,000 of 50,000 entries', 'Error 1, Warning 1, Info 49,997',
         'Cache 49,997, (none) 1, <img src=x onerror=fail()> 1, Layout 1', '50 minutes', '2 of 50,000 entries',
         f'2026-11-16 21:20 Error <img src=x onerror=fail()> {HOSTILE}', 'Error 1, Warning 1', HOSTILE,
         '1 of 50,000 entries', '1 of 50,000 entries', '2 of 50,000 entries', True, 'stray stray',
         '50,000 of 50,000 entries', 'Log', None, 0]


def entry(minute, level, category, message):
    return (f'<l:LogEntry><l:Timestamp>11/16/2026, 9:{minute} PM:1</l:Timestamp><l:Tid>7f</l:Tid><l:Category>{category}'
            f'</l:Category><l:Severity>{level}</l:Severity><l:Id></l:Id><l:Description></l:Description>'
            f'<l:Body>{message}</l:Body></l:LogEntry>\n')


with browser_and_folder() as (browser, folder):
    Path(f'{folder}/log.xml').write_text(
        entry(10, 'Info', 'Cache', 'of many') * 49_997 +
        entry(20, 'Error', '<img src=x onerror=fail()>', HOSTILE.replace('&', '&amp;')) +
        entry(59, 'Warning', 'Layout', 'Überlauf') + 'stray', 'utf-8')
    with open(f'{folder}/page.html', 'wb') as page:
        subprocess.run([sys.argv[1], '--format', 'html', f'{folder}/log.xml'], check=True, stdout=page)
    browser.open(f'{folder}/page.html', ready='document.readyState === "complete"')
    told, most_rows = browser.run_async(USE)
    differences = [f'{got!r} for {wanted!r}' for got, wanted in zip(told, SHOWN, strict=True) if got != wanted]
    # However many entries there are, only the rows in sight are made.
    sys.exit('\n'.join(differences + browser.errors() + [f'{most_rows} rows are made'] * (most_rows >= 100)) or 0)
