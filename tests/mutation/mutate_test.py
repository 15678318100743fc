"""What mutate.py changes in a text, and that a seed always gives the same mutants."""
import unittest

import mutate

SOURCE = '''#include "Row.h"
constexpr int Height = 80; // of 1 row
int Row::find(int wanted) const
{
    qCDebug(log) << "looking" << 1;
    Q_ASSERT(wanted >= 0);
    if (wanted < m_count && m_known)
        show(wanted);
    m_last = wanted;
    touch("0 == 1");
    return m_last;
}
'''


class ChangesTest(unittest.TestCase):
    def test_each_kind_of_change_and_no_other(self):
        self.assertEqual(sorted(what for *_, what in mutate.changes_of(SOURCE)), [
            '&& → ||', '80 → 79', '80 → 81', '< → <=', 'm_last = wanted; one line later',
            'return m_last; → return !(m_last);', 'return m_last; → return {};', 'return m_last; → return;',
            'wanted < m_count && m_known → !(wanted < m_count && m_known)',
            'without m_last = wanted;', 'without show(wanted);', 'without touch("0 == 1");'])

    def test_a_change_is_made_in_its_place(self):
        changed = {what: SOURCE[:start] + new + SOURCE[end:] for _, start, end, new, what in mutate.changes_of(SOURCE)}
        self.assertEqual(changed['without touch("0 == 1");'], SOURCE.replace('touch("0 == 1");', '{}'))
        self.assertEqual(changed['80 → 81'], SOURCE.replace('80', '81'))
        self.assertEqual(changed['m_last = wanted; one line later'], SOURCE.replace(
            '    m_last = wanted;\n    touch("0 == 1");', '    touch("0 == 1");\n    m_last = wanted;'))

    def test_a_seed_gives_the_same_mutants_spread_over_the_sources(self):
        first = [part[0] for part in mutate.choices(['base', 'net'], 40, 5)]
        self.assertEqual(first, [part[0] for part in mutate.choices(['base', 'net'], 40, 5)])
        self.assertNotEqual(first, [part[0] for part in mutate.choices(['base', 'net'], 40, 6)])
        self.assertGreater(len({mutant.path for mutant in first}), 15)


if __name__ == '__main__':
    unittest.main()
