#!/usr/bin/env python3
"""Live maps in a real browser: PageTest.py path/to/mindmap. Exits with 77 where there is no Chromium."""

import itertools
import os
import random
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

sys.path.append(f'{os.path.dirname(__file__)}/../support')
from Browser import DOWN, ENTER, ESCAPE, LEFT, RIGHT, SHIFT, TAB, Browser, missing

PLAN = '''<opml><body><outline text="Voyage">
 <outline text="Route" _note="By way of Łódź"><outline text="Tromsø" date="2027-06-01" url="https://example.org/a?b=c"/>
  <outline text="Reykjavik" amount="€ 8750"/></outline>
 <outline text="Science"><outline text="Ice"><outline text="Cores" amount="€ 100"/><outline text="Ponds"/></outline>
  <outline text="Water"/></outline>
 <outline text="People"/></outline></body></opml>'''

HOSTILE = ['</script><script>window.ran=1</script>', '<!--<script>', ']]>', '<img src=x onerror="window.ran=1">',
           '"onload="window.ran=1" x="', "'+(window.ran=1)+'", '${window.ran=1}', '{{data}}', '&lt;b&gt;&amp;amp;',
           'a\u2028b\u2029c', '\u202eevil\u202c \u2066x', '\\u003c/script>\\', '__proto__', '\U0001f6a2 \ufffd']
LINKS = ['javascript:window.ran=1', ' JaVaScript:window.ran=1', 'java\tscript:window.ran=1', 'data:text/html,<script>1</script>',
         'vbscript:x', 'blob:null/x', 'https://example.org/"onclick="window.ran=1']


def nested(count, children, deepest, word):
    """An outline as indented lines."""
    lines, stack = ['root'], [(1, next(children))]
    while stack and len(lines) < count:
        level, left = stack.pop()
        if left == 0:
            continue
        stack.append((level, left - 1))
        lines.append('\t' * level + f'{word()} {len(lines)}')
        if level < deepest:
            stack.append((level + 1, next(children)))
    return '\n'.join(lines)


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
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        os.environ['XDG_CONFIG_HOME'] = cls.folder.name
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.folder.cleanup()

    def setUp(self):
        self.browser.resize(1280, 800)
        self.browser.prefer(prefers_color_scheme='light', prefers_reduced_motion='reduce')

    def tearDown(self):
        self.assertEqual(self.browser.errors(), [])

    def draw(self, outline, extension, locale='en_US'):
        path = f'{self.folder.name}/map'
        with open(f'{path}.txt', 'w', encoding='utf-8') as file:
            file.write(outline)
        source = f'{path}.opml' if outline.startswith('<opml') else f'{path}.txt'
        os.replace(f'{path}.txt', source)
        subprocess.run([PROGRAM, source, '-o', f'{path}.{extension}', '--replace', '--locale', locale], check=True,
                       stdout=subprocess.DEVNULL)
        return f'{path}.{extension}'

    def open(self, outline, locale='en_US'):
        self.path = self.draw(outline, 'html', locale)
        self.look('')
        self.browser.run('byId("map").focus()')

    def look(self, fragment):
        self.browser.open(self.path, fragment)
        self.browser.run(HELPERS)

    def value(self, expression):
        return self.browser.value(expression)

    def use(self, *steps):
        """Presses the keys of each step and looks at what an expression of the page gives then."""
        for keys, expression, expected in steps:
            self.browser.press(*keys)
            self.assertEqual(self.value(expression), expected, (keys, expression))

    def middle(self, name, part='.shape'):
        x, y, width, height = self.value(f'box("{name}", "{part}")')
        return x + width / 2, y + height / 2

    def click(self, name, part='.shape'):
        self.browser.point([self.middle(name, part)])

    def test_places_topics_and_lines_as_the_program_does(self):
        generator = random.Random(7)
        words = 'a river, a rather long name of a topic, ثلج البحر, 🚢 ship, well-known/path_of.things'.split(', ')
        word = lambda: generator.choice(words)
        few = lambda: (generator.randrange(5) for _ in itertools.count())
        outlines = {
            'sample': PLAN, 'bushy': nested(300, few(), 6, word), 'small': nested(40, few(), 3, word),
            'list': nested(250, itertools.chain([250], itertools.repeat(0)), 1, word),
            'chain': nested(150, itertools.repeat(1), 150, word),
            'giant': nested(400, itertools.chain([2, 380], few()), 4, word),
        }
        number = re.compile(r'-?[\d.]+(?:e-?\d+)?')
        for name, outline in outlines.items():
            with self.subTest(name):
                svg = xml.etree.ElementTree.parse(self.draw(outline, 'svg')).getroot()
                tag = lambda kind: '{http://www.w3.org/2000/svg}' + kind
                places = {}
                for group in svg.iter(tag('g')):
                    shape = group.find(f'.//{tag("rect")}')
                    if (group.get('id') or '').startswith('topic-') and shape is not None:
                        places[group.get('id')] = [float(shape.get('x')), float(shape.get('y'))]
                lines = [path.get('d') for path in svg.iter(tag('path')) if path.get('stroke-width') and path.get('stroke')]
                self.open(outline)
                self.browser.press('a')
                drawn = self.browser.run('''dispatchEvent(new Event('beforeprint'));
                    const drawn = { lines: select('#lines path').map(p => p.getAttribute('d')) };
                    drawn.places = Object.fromEntries(select('#shapes > g').slice(1).map(
                      g => [g.dataset.id, g.getAttribute('transform').match(/-?[\\d.]+/g).map(Number)]));
                    dispatchEvent(new Event('afterprint'));
                    return drawn;''')
                self.assertEqual(drawn['places'], places)
                self.assertEqual(len(drawn['lines']), len(lines))
                for ours, theirs in zip(drawn['lines'], lines):
                    self.assertEqual(re.sub(number, '', ours).replace(' ', ''), re.sub(number, '', theirs).replace(' ', ''))
                    for a, b in zip(number.findall(ours), number.findall(theirs)):
                        self.assertAlmostEqual(float(a), float(b), delta=0.02)

    def test_folds_a_branch_in_place_and_remembers_it_in_the_address(self):
        self.open(PLAN)
        self.use(('a', 'shown().sort().join(" ")', 'Cores Ice People Ponds Reykjavik Route Science Tromsø Voyage Water'))
        before = self.middle('Science')
        self.click('Science', '.reach')
        self.use(('', 'shown().sort().join(" ")', 'People Reykjavik Route Science Tromsø Voyage'))
        for now, then in zip(self.middle('Science'), before):
            self.assertAlmostEqual(now, then, delta=0.6)
        self.use(('', 'document.querySelector(`[data-id="topic-Science"] .knob`).textContent', '+4'), ('0', '1', 1))
        self.click('Route')
        self.browser.wait('location.hash.includes("topics=topic-Science") && location.hash.startsWith("#topic-Route&")')
        self.look(self.value('location.hash'))
        self.use(('', 'has("Ice", "Tromsø")', [False, True]), ('', 'told("status").slice(0, 14)', 'Route, 2 below'))
        self.look('#topic-Cores')  # shows what is deep below
        self.use(('', 'has("Cores")', [True]))
        for nonsense in ('#topic-None&level=x', '#%E0%A4%A', '#topic-Route&level=-1&topics=,,topic-None*,%', '#&&==&level'):
            self.look(nonsense)
            self.use(('', 'has("Voyage")', [True]))

    def test_moving_topics_glide_unless_the_user_wants_it_calm(self):
        running = 'document.getAnimations().length'
        self.open(PLAN)
        self.use(('1', running, 0))
        self.browser.prefer(prefers_reduced_motion='no-preference')
        self.assertGreater(self.browser.run(f'byId("all").click(); return {running}'), 3)
        self.browser.wait(f'{running} === 0')

    def test_everything_is_reached_by_keys(self):
        self.open(PLAN)
        self.use(('1', 'shown().length', 4), ('2', 'shown().length', 8), (('1', RIGHT), 'chosen()', 'Route'),
                 ('b', 'has("Tromsø", "Cores")', [True, False]), (' ', 'shown().length', 4))
        x, _, width, _ = self.value('box("Voyage")')
        self.browser.press(RIGHT, held=SHIFT)
        self.assertAlmostEqual(self.value('box("Voyage")[0]'), x - 80, delta=1)
        self.use(('+', f'box("Voyage")[2] > {width}', True), ('0?', 'byId("help").matches(":popover-open")', True))
        self.browser.press(ESCAPE)
        # From the first control to the last by Tab, each with a focus that is seen.
        reached = set()
        for _ in range(16):
            self.browser.press(TAB)
            id, style, clip = self.value('''[document.activeElement.id, getComputedStyle(document.activeElement).outlineStyle,
                getComputedStyle(byId('outline')).clipPath]''')
            self.assertFalse(id and style == 'none' or id == 'rows' and clip != 'none', id)
            reached.add(id)
        self.assertTrue({'query', 'all', 'fit', 'toggle-outline', 'rows', 'map'} <= reached, reached)

    def test_the_outline_has_the_same_topics_for_readers_of_the_screen(self):
        self.open(PLAN)
        self.browser.press('a1o')
        self.use(*(('', f'row({i})', row) for i, row in enumerate((
            'Voyage 1 1 1  true', 'Route 2 1 3 false false', 'Science 2 2 3 false false', 'People 2 3 3  false'))))
        self.use(((DOWN, DOWN, RIGHT, RIGHT), 'row(3)', 'Ice 3 1 2 false true'), ('', 'has("Ice")', [True]),
                 ('', 'byId(document.activeElement.getAttribute("aria-activedescendant")).lastChild.data', 'Ice'),
                 ((LEFT, LEFT), 'row(2)', 'Science 2 2 3 false true'), (ENTER, 'told("text")', 'Science'))

    def test_search_counts_hits_and_goes_from_one_to_the_next(self):
        self.open(PLAN)
        self.use(('1/ro', 'told("hits")', '2'), (ENTER, '[told("hits"), told("text")]', ['1 of 2', 'Route']),
                 ('', 'told("note")', 'By way of Łódź'), (ENTER, '[told("hits"), told("text")]', ['2 of 2', 'Tromsø']),
                 ('', 'told("facts").includes("June 1, 2027")', True),
                 ('', 'document.querySelector("#facts a").href', 'https://example.org/a?b=c'))
        self.browser.press(ENTER, held=SHIFT)
        self.use(('', 'told("text")', 'Route'), (ESCAPE, 'told("hits")', ''))
        for query, count in (('LODZ', '0'), ('łodz', '1'), ('8,750', '2'), ('example.org', '1'), ('no such', '0')):
            self.use(('/' + query, 'told("hits")', count), (ESCAPE, 'told("hits")', ''))

    def test_speaks_the_users_language_and_names_the_colors(self):
        self.open(PLAN, locale='de_DE')
        self.browser.run('ask("query", "o")')
        self.use(('n', 'told("hits").startsWith("1 von ")', True), ('', 'document.documentElement.lang.slice(0, 2)', 'de'),
                 ('', 'told("legend").split("\\n")', ['Blau Route', 'Ziegelrot Science', 'Grün People']),
                 ('', 'document.body.outerHTML.split("<script", 1)[0].includes("{{")', False))

    def test_texts_of_the_outline_are_neither_script_nor_markup(self):
        topics = [f'<outline text="{attribute(text)}" _note="{attribute(text)}"/>' for text in HOSTILE]
        topics += [f'<outline text="link" url="{attribute(link)}"/>' for link in LINKS]
        self.open(f'<opml><body><outline text="{attribute(HOSTILE[0])}">{"".join(topics)}</outline></body></opml>')
        self.use(('a', 'document.title', HOSTILE[0]))
        for number, text in enumerate(HOSTILE):
            self.browser.press('o')
            self.browser.run('location.hash = "#" + encodeURIComponent(JSON.parse(byId("data").textContent).topics[arguments[0]].id)',
                             number + 1)
            self.browser.wait('document.querySelector("[aria-selected=true]").id === arguments[0]', f'row-{number + 1}')
            self.use((('o', ENTER), 'byId("text").textContent', text))
        self.use(('', 'select("a, use").map(a => a.getAttribute("href")).filter(h => !/^(#icon|https:)/.test(h))', []),
                 ('', 'select("script, img, iframe, object, style, b").length', 4), ('', 'window.ran ?? null', None))
        # The policy stops what would get in all the same, and every call home.
        self.browser.run_async('''const done = arguments[0];
            document.body.insertAdjacentHTML('beforeend', '<img src="https://example.org/x.png" onerror="window.ran=1">');
            const script = document.createElement('script');
            script.textContent = 'window.ran=1';
            document.body.append(script);
            fetch('https://example.org').catch(() => setTimeout(done, 50));''')
        self.use(('', 'window.ran ?? null', None))
        self.assertGreaterEqual(sum('Content Security Policy' in error for error in self.browser.errors()), 3)

    def test_opens_so_that_what_is_shown_can_be_read(self):
        bushy = nested(2000, itertools.repeat(6), 6, lambda: 'a topic')
        for outline in (PLAN, bushy, 'root\n' + '\n'.join(f'\tmain {i}' for i in range(500))):
            self.open(outline)
            self.use(('', '''select('#shapes .topic text').every(
                t => parseFloat(getComputedStyle(t).fontSize) * t.getScreenCTM().a >= 8) && shown().length >= 4''', True))

    def test_follows_the_system_from_light_to_dark(self):
        colors = '''['body', '.shape', '.b0 .shape', '#shapes text', '#bar'].map(s =>
            getComputedStyle(document.querySelector(s))[s === 'body' || s === '#bar' ? 'backgroundColor' : 'fill'])'''
        self.open(PLAN)
        light = self.value(colors)
        self.browser.prefer(prefers_color_scheme='dark')
        dark = self.value(colors)
        self.assertEqual([light[0], dark[0]], ['rgb(252, 251, 248)', 'rgb(22, 27, 34)'])
        self.assertEqual([a == b for a, b in zip(light, dark)], [False, False, True, False, False])

    def test_prints_on_one_page_and_goes_on_as_before(self):
        self.open(nested(300, itertools.repeat(4), 3, lambda: 'a topic'))
        self.browser.press('a')
        self.assertEqual(self.browser.page_count(), 1)
        self.use(('1', 'shown().length', 5))

    def test_fingers_pan_and_pinch_on_a_telephone(self):
        self.browser.resize(390, 844)
        self.open(PLAN)
        self.use(('', 'document.documentElement.scrollWidth', 390))
        x, y, width, _ = self.value('box("Voyage")')
        self.browser.point([(200, 700), (200, 690), (240, 730)], kind='touch')
        self.assertAlmostEqual(self.value('box("Voyage")[0]') - x, 40, delta=12)
        self.browser.point([(180, 500), (170, 500), (100, 500)], [(210, 500), (220, 500), (290, 500)], kind='touch')
        self.assertGreater(self.value('box("Voyage")[2]'), 2 * width)

    def test_ten_thousand_topics_stay_fluent(self):
        """What times depend on is held: how many elements there are."""
        generator = random.Random(3)
        word = lambda: generator.choice(('river', 'a stone in the river', 'harbor light', 'winter tide and salt'))
        self.open(nested(10_000, itertools.repeat(10), 4, word))
        few = 'select("*").length < 8000'
        self.use(('2', few, True), ('a', few, True))
        for _ in range(7):
            self.browser.run("byId('map').dispatchEvent(new WheelEvent('wheel', { deltaY: -200, clientX: 500, clientY: 400 }))")
            self.use(('', few, True))
        self.browser.run('ask("query", "river")')
        self.use(*((key, few, True) for key in 'n3b'), ('', 'told("hits").split(" of ")[0]', '1'))


if __name__ == '__main__':
    if missing():
        print('The browser tests did not run, without:', *missing())
        sys.exit(77)
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
