#!/usr/bin/env python3
"""Live maps in a real browser: PageTest.py path/to/mindmap. Exits with 77 where there is no Chromium."""

import itertools
import os
import random
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.append(f'{Path(__file__).parent}/../support')
from Browser import DOWN, ENTER, ESCAPE, LEFT, RIGHT, SHIFT, TAB, browser_and_folder

PLAN = '''<opml><body><outline text="Voyage">
 <outline text="Route" _note="By way of Łódź"><outline text="Tromsø" date="2027-06-01" url="https://example.org/a?b=c"/>
  <outline text="Reykjavik" amount="€ 8750"/></outline>
 <outline text="Science"><outline text="Ice"><outline text="Cores" amount="€ 100"/><outline text="Ponds"/></outline>
  <outline text="Water"/></outline>
 <outline text="People"/></outline></body></opml>'''

HOSTILE = ['</script><script>window.ran=1</script>', '<!--<script>', ']]>', '<img src=x onerror="window.ran=1">',
           '"onload="window.ran=1" x="', "'+(window.ran=1)+'", '${window.ran=1}', '{{data}}', '&lt;b&gt;&amp;amp;',
           'a\u2028b\u2029c', '\u202eevil\u202c \u2066x', '\\u003c/script>\\', '__proto__', '\U0001f6a2 \ufffd']
GENERATOR = random.Random(7)
LINKS = ['javascript:window.ran=1', ' JaVaScript:window.ran=1', 'java\tscript:window.ran=1', 'data:text/html,<script>1</script>',
         'vbscript:x', 'blob:null/x', 'https://example.org/"onclick="window.ran=1']


def nested(levels, texts='a topic'):
    """An outline as indented lines."""
    return '\n'.join(['root'] + [f'{level * chr(9)}{GENERATOR.choice(texts.split(", "))} {number}'
                                 for number, level in enumerate(levels)])


def attribute(text):
    return ''.join(f'&#{ord(c)};' for c in text)


# What steps look at: the drawn topics, their boxes, the chosen one, the rows of the outline.
HELPERS = r'''
byId = id => document.getElementById(id);
told = id => byId(id).innerText;
select = selector => [...document.querySelectorAll(selector)];
shown = () => select('#shapes > .topic').map(n => n.dataset.id.slice('topic-'.length));
has = (...names) => names.map(name => shown().includes(name));
box = (name, part = '.shape') => (r => [r.x, r.y, r.width, r.height])(
    document.querySelector(`[data-id="topic-${name}"] ${part}`).getBoundingClientRect());
chosen = () => byId('status').textContent.split(',')[0];
row = i => (r => [r.lastChild.data, ...['level', 'posinset', 'setsize', 'expanded', 'selected'].map(
    n => r.getAttribute(`aria-${n}`))].join(' '))(select('[role=tree] [role=treeitem]')[i]);
ask = (id, text) => { byId(id).value = text; byId(id).dispatchEvent(new Event('input')); };'''


class Page(unittest.TestCase):
    def setUp(self):
        BROWSER.resize(1280, 800)
        BROWSER.prefer(prefers_color_scheme='light', prefers_reduced_motion='reduce')
        self.open(PLAN)

    def tearDown(self):
        self.assertEqual(BROWSER.errors(), [])

    def draw(self, outline, extension, locale='en_US'):
        source, path = f'{FOLDER}/map.{"opml" if outline[0] == "<" else "txt"}', f'{FOLDER}/map.{extension}'
        Path(source).write_text(outline, encoding='utf-8')
        subprocess.run([PROGRAM, source, '-o', path, '--replace', '--locale', locale], check=True, stdout=subprocess.DEVNULL)
        return path

    def open(self, outline, locale='en_US'):
        self.path = self.draw(outline, 'html', locale)
        self.look('')
        BROWSER.run('byId("map").focus()')

    def look(self, fragment):
        BROWSER.open(self.path, fragment)
        BROWSER.run(HELPERS)

    def use(self, *steps):
        """Presses the keys of each step and looks at what an expression of the page gives then."""
        for keys, expression, expected in steps:
            BROWSER.press(*keys)
            self.assertEqual(BROWSER.value(expression), expected, (keys, expression))

    def middle(self, name, part='.shape'):
        x, y, width, height = BROWSER.value(f'box("{name}", "{part}")')
        return x + width / 2, y + height / 2

    def test_places_topics_and_lines_as_the_program_does(self):
        texts = 'a river, a rather long name of a topic, ثلج البحر, 🚢 ship, well-known/path_of.things'
        bushy = list(itertools.accumulate(range(300), lambda level, _: GENERATOR.randint(1, min(6, level + 1)), initial=1))
        outlines = {'sample': PLAN, 'bushy': nested(bushy, texts), 'chain': nested(range(1, 150), texts),
                    'list': nested([1] * 250, texts), 'giant': nested([1, 1] + [level + 1 for level in bushy], texts)}
        parts = lambda lines: [re.findall(r'[A-Z]|-?[\d.]+(?:e-?\d+)?', line) for line in lines]
        for name, outline in outlines.items():
            with self.subTest(name):
                svg = Path(self.draw(outline, 'svg')).read_text('utf-8')
                places = re.findall(r'<g id="(topic-[^"]*)"(?:(?!<g ).)*?<rect x="(\S+)" y="(\S+)"', svg, re.S)
                lines = parts(re.findall(r'<path d="(.*?)" stroke="', svg))
                self.open(outline)
                BROWSER.press('a')
                drawn = BROWSER.run('''dispatchEvent(new Event('beforeprint'));
                    const drawn = [select('#lines path').map(p => p.getAttribute('d')), select('#shapes > g').slice(1).map(
                      g => [g.dataset.id, ...g.getAttribute('transform').match(/-?[\\d.]+/g).map(Number)])];
                    dispatchEvent(new Event('afterprint'));
                    return drawn;''')
                self.assertEqual(sorted(drawn[1]), sorted([id, float(x), float(y)] for id, x, y in places))
                self.assertEqual([len(line) for line in parts(drawn[0])], [len(line) for line in lines])
                for ours, theirs in zip(itertools.chain(*parts(drawn[0])), itertools.chain(*lines)):
                    if ours != theirs:
                        self.assertAlmostEqual(float(ours), float(theirs), delta=0.02)

    def test_folds_a_branch_in_place_and_remembers_it_in_the_address(self):
        self.use(('a', 'shown().sort().join(" ")', 'Cores Ice People Ponds Reykjavik Route Science Tromsø Voyage Water'))
        before = self.middle('Science')
        BROWSER.point([self.middle('Science', '.reach')])
        self.use(('', 'shown().sort().join(" ")', 'People Reykjavik Route Science Tromsø Voyage'))
        for now, then in zip(self.middle('Science'), before):
            self.assertAlmostEqual(now, then, delta=0.6)
        self.use(('', 'document.querySelector(`[data-id="topic-Science"] .knob`).textContent', '+4'), ('0', '1', 1))
        BROWSER.point([self.middle('Route')])
        BROWSER.wait('location.hash.includes("topics=topic-Science") && location.hash.startsWith("#topic-Route&")')
        self.look(BROWSER.value('location.hash'))
        self.use(('', 'has("Ice", "Tromsø")', [False, True]), ('', 'told("status").slice(0, 14)', 'Route, 2 below'))
        self.look('#topic-Cores')  # shows what is deep below
        self.use(('', 'has("Cores")', [True]))
        for nonsense in ('#topic-None&level=x', '#%E0%A4%A', '#topic-Route&level=-1&topics=,,topic-None*,%', '#&&==&level'):
            self.look(nonsense)
            self.use(('', 'has("Voyage")', [True]))

    def test_follows_the_system_in_color_and_motion(self):
        running = 'document.getAnimations().length'
        self.use(('1', running, 0))
        BROWSER.prefer(prefers_reduced_motion='no-preference')
        self.assertGreater(BROWSER.run(f'byId("all").click(); return {running}'), 3)
        BROWSER.wait(f'{running} === 0')
        colors = '''['body', '#bar', '.shape', '#shapes text', '.b0 .shape'].map(
            (s, i) => getComputedStyle(document.querySelector(s))[i < 2 ? 'backgroundColor' : 'fill'])'''
        light = BROWSER.value(colors)
        BROWSER.prefer(prefers_color_scheme='dark')
        dark = BROWSER.value(colors)
        self.assertEqual([light[0], dark[0]], ['rgb(252, 251, 248)', 'rgb(22, 27, 34)'])
        self.assertEqual([a == b for a, b in zip(light, dark)], [False, False, False, False, True])

    def test_everything_is_reached_by_keys(self):
        self.use(('1', 'shown().length', 4), ('2', 'shown().length', 8), (('1', RIGHT), 'chosen()', 'Route'),
                 ('b', 'has("Tromsø", "Cores")', [True, False]), (' ', 'shown().length', 4))
        x, _, width, _ = BROWSER.value('box("Voyage")')
        BROWSER.press(RIGHT, held=SHIFT)
        self.assertAlmostEqual(BROWSER.value('box("Voyage")[0]'), x - 80, delta=1)
        self.use(('+', f'box("Voyage")[2] > {width}', True), ('0?', 'byId("help").matches(":popover-open")', True))
        BROWSER.press(ESCAPE)
        # From the first control to the last by Tab, each with a focus that is seen.
        reached = set()
        for _ in range(16):
            BROWSER.press(TAB)
            id, style, clip = BROWSER.value('''[document.activeElement.id, getComputedStyle(document.activeElement).outlineStyle,
                getComputedStyle(byId('outline')).clipPath]''')
            self.assertFalse(id and style == 'none' or id == 'rows' and clip != 'none', id)
            reached.add(id)
        self.assertTrue({'query', 'all', 'fit', 'toggle-outline', 'rows', 'map'} <= reached, reached)

    def test_the_outline_has_the_same_topics_for_readers_of_the_screen(self):
        BROWSER.press('a1o')
        self.use(*(('', f'row({i})', row) for i, row in enumerate((
            'Voyage 1 1 1  true', 'Route 2 1 3 false false', 'Science 2 2 3 false false', 'People 2 3 3  false'))))
        self.use(((DOWN, DOWN, RIGHT, RIGHT), 'row(3)', 'Ice 3 1 2 false true'), ('', 'has("Ice")', [True]),
                 ('', 'byId(document.activeElement.getAttribute("aria-activedescendant")).lastChild.data', 'Ice'),
                 ((LEFT, LEFT), 'row(2)', 'Science 2 2 3 false true'), (ENTER, 'told("text")', 'Science'))

    def test_search_counts_hits_and_goes_from_one_to_the_next(self):
        self.use(('1/ro', 'told("hits")', '2'), (ENTER, '[told("hits"), told("text")]', ['1 of 2', 'Route']),
                 ('', 'told("note")', 'By way of Łódź'), (ENTER, '[told("hits"), told("text")]', ['2 of 2', 'Tromsø']),
                 ('', 'told("facts").includes("June 1, 2027")', True),
                 ('', 'document.querySelector("#facts a").href', 'https://example.org/a?b=c'))
        BROWSER.press(ENTER, held=SHIFT)
        self.use(('', 'told("text")', 'Route'), (ESCAPE, 'told("hits")', ''))
        for query, count in (('LODZ', '0'), ('łodz', '1'), ('8,750', '2'), ('example.org', '1'), ('no such', '0')):
            self.use(('/' + query, 'told("hits")', count), (ESCAPE, 'told("hits")', ''))

    def test_speaks_the_users_language_and_names_the_colors(self):
        self.open(PLAN, locale='de_DE')
        BROWSER.run('ask("query", "o")')
        self.use(('n', 'told("hits").startsWith("1 von ")', True), ('', 'document.documentElement.lang.slice(0, 2)', 'de'),
                 ('', 'told("legend").split("\\n")', ['Blau Route', 'Ziegelrot Science', 'Grün People']),
                 ('', 'document.body.outerHTML.split("<script", 1)[0].includes("{{")', False))

    def test_texts_of_the_outline_are_neither_script_nor_markup(self):
        topics = [f'<outline text="{attribute(text)}" _note="{attribute(text)}"/>' for text in HOSTILE]
        topics += [f'<outline text="link" url="{attribute(link)}"/>' for link in LINKS]
        self.open(f'<opml><body><outline text="{attribute(HOSTILE[0])}">{"".join(topics)}</outline></body></opml>')
        self.use(('ao', 'document.title', HOSTILE[0]),
                 *(((DOWN, ENTER), 'byId("text").textContent', text) for text in HOSTILE),
                 *(((DOWN, ENTER), 'select("#facts a").every(a => /^(https|file):/.test(a.href))', True) for _ in LINKS))
        self.use(('', 'select("a, use").map(a => a.getAttribute("href")).filter(h => !/^(#icon|https:)/.test(h))', []),
                 ('', 'select("script, img, iframe, object, style, b").length', 4), ('', 'window.ran ?? null', None))
        # The policy stops what would get in all the same, and every call home.
        BROWSER.run_async('''const done = arguments[0];
            document.body.insertAdjacentHTML('beforeend', '<img src="https://example.org/x.png" onerror="window.ran=1">');
            const script = document.createElement('script');
            script.textContent = 'window.ran=1';
            document.body.append(script);
            fetch('https://example.org').catch(() => setTimeout(done, 50));''')
        self.use(('', 'window.ran ?? null', None))
        self.assertGreaterEqual(sum('Content Security Policy' in error for error in BROWSER.errors()), 3)

    def test_fingers_pan_and_pinch_on_a_telephone(self):
        BROWSER.resize(390, 844)
        self.open(PLAN)
        self.use(('', 'document.documentElement.scrollWidth', 390))
        x, y, width, _ = BROWSER.value('box("Voyage")')
        BROWSER.point([(200, 700), (200, 690), (240, 730)], kind='touch')
        self.assertAlmostEqual(BROWSER.value('box("Voyage")[0]') - x, 40, delta=12)
        BROWSER.point([(180, 500), (170, 500), (100, 500)], [(210, 500), (220, 500), (290, 500)], kind='touch')
        self.assertGreater(BROWSER.value('box("Voyage")[2]'), 2 * width)

    def test_large_maps_are_readable_and_fluent_and_print_on_one_page(self):
        """What times depend on is held: how many elements there are."""
        few = 'select("*").length < 8000'
        tens = [4 - (i % 10 == 0) - (i % 100 == 0) - (i % 1000 == 0) for i in range(10_000)]
        for outline in (nested([1] * 500), nested(tens, 'river, harbor')):
            self.open(outline)
            self.use(('', '''select('#shapes .topic text').every(
                t => parseFloat(getComputedStyle(t).fontSize) * t.getScreenCTM().a >= 8) && shown().length >= 4''', True),
                     ('2', few, True), ('a', few, True))
        for _ in range(7):
            BROWSER.run("byId('map').dispatchEvent(new WheelEvent('wheel', { deltaY: -200, clientX: 500, clientY: 400 }))")
            self.use(('', few, True))
        BROWSER.run('ask("query", "river")')
        self.use(*((key, few, True) for key in 'n3b'), ('', 'told("hits").split(" of ")[0]', '1'))
        self.assertEqual(BROWSER.page_count(), 1)
        self.use(('1', 'shown().length', 11))


if __name__ == '__main__':
    PROGRAM = sys.argv.pop(1)
    with browser_and_folder() as (BROWSER, FOLDER):
        os.environ['XDG_CONFIG_HOME'] = FOLDER
        unittest.main(verbosity=2)
