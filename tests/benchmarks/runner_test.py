"""The benchmarks' runner: what programs say becomes the table and the list, and what they do not say is an error."""
import contextlib
import io
import json
import os
import sys
import tempfile
import unittest

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(PROJECT, 'benchmarks'))
import names  # noqa: E402
import report  # noqa: E402
import run  # noqa: E402

DOCUMENT = f'# Words before\n{report.BEGIN}\nan old table\n{report.END}\nwords after\n'
QUICKLY = '{"name": "quickly", "value": 3, "floor": 2, "unit": "ms"}'
ALONE = '{"name": "alone", "value": 0.5, "floor": null, "unit": "ms"}'


def saying(*lines):
    """A program that prints these lines."""
    return [sys.executable, '-c', f'print({chr(10).join(lines)!r})']


class RunnerTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='plovendix-runner-')
        self.addCleanup(folder.cleanup)
        self.listing = os.path.join(folder.name, 'bench.json')
        self.document = os.path.join(folder.name, 'benchmarks.md')
        with open(self.document, 'w', encoding='utf-8') as file:
            file.write(DOCUMENT)
        self.printed = io.StringIO()
        self.complaints = io.StringIO()

    def bench(self, arguments, *programs):
        with contextlib.redirect_stdout(self.printed), contextlib.redirect_stderr(self.complaints):
            return run.main(arguments, programs, self.listing, self.document)

    def written(self):
        with open(self.document, encoding='utf-8') as file:
            return file.read()

    def listed(self):
        with open(self.listing, encoding='utf-8') as file:
            return json.load(file)

    def test_lines_become_the_list_in_the_programs_order(self):
        self.assertEqual(self.bench([], (('quickly', 'alone'), saying(ALONE, QUICKLY))), 0)
        self.assertEqual(self.listed(), [
            {'name': 'quickly', 'value': 3, 'floor': 2, 'ratio': 1.5, 'unit': 'ms'},
            {'name': 'alone', 'value': 0.5, 'floor': None, 'ratio': None, 'unit': 'ms'}])

    def test_lines_become_the_table(self):
        self.bench([], (('quickly', 'alone'), saying(QUICKLY, ALONE)))
        self.assertEqual(self.printed.getvalue(), '| benchmark | value | floor | unit | ratio |\n'
                                                  '| --------- | ----- | ----- | ---- | ----- |\n'
                                                  '| quickly   | 3     | 2     | ms   | 1.5   |\n'
                                                  '| alone     | 0.5   | –     | ms   | –     |\n')

    def test_a_full_run_replaces_the_documents_table_alone(self):
        self.bench([], (('quickly',), saying(QUICKLY)))
        text = self.written()
        self.assertTrue(text.startswith('# Words before\n'), text)
        self.assertTrue(text.endswith('\nwords after\n'), text)
        self.assertNotIn('an old table', text)
        self.assertIn(self.printed.getvalue(), text)
        self.assertRegex(text, r'\d{4}-\d\d-\d\d, .+ cores, ')

    def test_writing_twice_leaves_one_table(self):
        for _time in range(2):
            self.bench([], (('quickly',), saying(QUICKLY)))
        self.assertEqual(self.written().count('| quickly'), 1)

    def test_a_quick_or_partial_run_leaves_the_document(self):
        for arguments in (['--quick'], ['quickly']):
            self.assertEqual(self.bench(arguments, (('quickly',), saying(QUICKLY))), 0)
            self.assertEqual(self.written(), DOCUMENT)

    def test_a_quick_run_writes_the_document_when_told_to(self):
        self.bench(['--quick', '--write'], (('quickly',), saying(QUICKLY)))
        self.assertIn('| quickly', self.written())

    def test_only_the_named_ones_run(self):
        failing = [sys.executable, '-c', 'raise SystemExit(3)']
        self.assertEqual(self.bench(['alone'], (('other',), failing), (('quickly', 'alone'), saying(QUICKLY, ALONE))), 0)
        self.assertEqual([entry['name'] for entry in self.listed()], ['alone'])

    def test_programs_hear_of_a_quick_run(self):
        demanding = [sys.executable, '-c', f'import sys; assert sys.argv[1:] == ["--quick"]; print({QUICKLY!r})']
        self.assertEqual(self.bench(['--quick'], (('quickly',), demanding)), 0)

    def test_programs_have_a_home_of_their_own(self):
        curious = [sys.executable, '-c', f'import os; assert os.environ["HOME"] != {os.environ.get("HOME")!r}; '
                                         f'assert not os.listdir(os.environ["XDG_CONFIG_HOME"]); print({QUICKLY!r})']
        self.assertEqual(self.bench([], (('quickly',), curious)), 0)

    def test_what_is_no_report_is_an_error(self):
        for lines in (['{"name": "quickly", "value": 3, "unit": "ms"}'], ['{"name": "quickly", "floor": 3, "unit": "ms"}'],
                      ['{"name": "quickly", "value": "3", "floor": 2, "unit": "ms"}'],
                      ['{"name": "quickly", "value": 3, "floor": 0, "unit": "ms"}'],
                      ['{"name": "quickly", "value": Infinity, "floor": 2, "unit": "ms"}'],
                      ['{"name": "quickly", "value": NaN, "floor": 2, "unit": "ms"}'],
                      ['{"name": "quickly", "value": 3, "floor": 2}'], ['3 ms'], [], [QUICKLY, QUICKLY], [QUICKLY, ALONE]):
            with self.subTest(lines=lines):
                self.assertEqual(self.bench([], (('quickly',), saying(*lines))), 1)
                self.assertIn('./bench: quickly: ', self.complaints.getvalue())
                self.assertEqual(self.written(), DOCUMENT)
                self.assertFalse(os.path.exists(self.listing))

    def test_a_program_that_fails_or_is_missing_is_an_error(self):
        for command in ([sys.executable, '-c', f'print({QUICKLY!r}); raise SystemExit(3)'], ['./no-such-program']):
            self.assertEqual(self.bench([], (('quickly',), command)), 1)
            self.assertFalse(os.path.exists(self.listing))

    def test_an_unknown_name_is_refused(self):
        with self.assertRaises(SystemExit) as refusal:
            self.bench(['quick'], (('quickly',), saying(QUICKLY)))
        self.assertEqual(refusal.exception.code, 2)


class NamesTest(unittest.TestCase):
    def test_made_names_are_the_same_in_every_run(self):
        import random
        first, second = (names.made_names(50, random.Random(names.SEED)) for _run in range(2))
        self.assertEqual(first, second)
        self.assertGreater(len(set(first)), 40)

    def test_a_corpus_is_a_list_or_the_first_column_of_a_table(self):
        for text in ('One.mkv\nTwo.mkv\n', 'filename\ttitle\nOne.mkv\tOne\n\nTwo.mkv\tTwo\n'):
            with tempfile.NamedTemporaryFile('w', encoding='utf-8') as file:
                file.write(text)
                file.flush()
                self.assertEqual(names.names_of(file.name), ['One.mkv', 'Two.mkv'])


if __name__ == '__main__':
    unittest.main()
