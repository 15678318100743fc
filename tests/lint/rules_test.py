"""Every rule finds what it is there for, and nothing in code that does right."""
import os
import tempfile
import unittest

from rules import MAX_LINES, RULES

# rule, path in the tree, text, number of complaints
CASES = (
    ('tests_do_not_sleep', 'tests/search/ATest.cpp', 'QTest::qWait(500);', 1),
    ('tests_do_not_sleep', 'tests/search/ATest.cpp', 'std::this_thread::sleep_for(1s);\nQThread::msleep(2);', 2),
    ('tests_do_not_sleep', 'tests/search/ATest.cpp', 'QVERIFY(spy.wait(500)); // no qWait(1) here', 0),
    ('tests_do_not_sleep', 'tests/search/ATest.cpp', 'QVERIFY(QTest::qWaitForWindowExposed(&window));', 0),
    ('tests_do_not_sleep', 'tests/desktop/a_test.py', 'time.sleep(1)', 1),
    ('tests_do_not_time', 'tests/search/ATest.cpp', 'QElapsedTimer timer;', 1),
    ('tests_do_not_time', 'tests/search/ATest.cpp', 'const auto start = std::chrono::steady_clock::now();', 1),
    ('tests_do_not_time', 'tests/search/ATest.cpp', 'QVERIFY(growsLikeItsInput(few, many)); // no QElapsedTimer', 0),
    ('tests_do_not_time', 'tests/support/Clock.cpp', 'QElapsedTimer timer;', 0),
    ('tests_do_not_time', 'tests/desktop/a_test.py', 'asked = time.monotonic()', 1),
    ('connections_are_typed', 'ui/views/A.cpp', 'connect(a, SIGNAL(b()), c, SLOT(d()));', 2),
    ('connections_are_typed', 'ui/views/A.cpp', '#include <QDBusConnection>\nbus.connect(a, b, this, SLOT(c(int)));', 0),
    ('connections_are_typed', 'ui/views/A.cpp', 'auto *button = sender();', 1),
    ('connections_are_typed', 'ui/views/A.cpp', 'void on_button_clicked();', 1),
    ('connections_are_typed', 'ui/views/A.cpp', 'connect(a, &A::b, this, &C::d); request.sender();', 0),
    ('connections_have_a_context', 'ui/views/A.cpp', 'connect(a, &A::b, [this] { c(1, 2); });', 1),
    ('connections_have_a_context', 'ui/views/A.cpp', 'QTimer::singleShot(10s, [=] { c(); });', 1),
    ('connections_have_a_context', 'ui/views/A.cpp', 'connect(a, &A::b, this, [this] { c(); });', 0),
    ('connections_have_a_context', 'ui/views/A.cpp', 'connect(a, &A::b, this, &C::d); QTimer::singleShot(1s, this, [] {});', 0),
    ('events_are_not_pumped', 'app/A.cpp', 'QApplication::processEvents();', 1),
    ('events_are_not_pumped', 'app/A.cpp', '/* processEvents() */ auto text = "processEvents()";', 0),
    ('files_are_short', 'app/A.cpp', 'a\n' * (MAX_LINES + 1), 1),
    ('files_are_short', 'app/A.cpp', 'a\n' * MAX_LINES, 0),
    ('only_the_entry_knows_sources', 'features/search/A.cpp', '#include <sources/online/RestService.h>', 1),
    ('only_the_entry_knows_sources', 'app/main.cpp', '#include <sources/online/RestService.h>', 0),
    ('only_the_entry_knows_sources', 'features/search/A.cpp', '#include <search/api/SubtitleService.h>', 0),
    ('includes_name_their_room', 'features/search/A.cpp', '#include "../ui/B.h"', 1),
    ('includes_name_their_room', 'features/search/A.cpp', '#include <ui/views/B.h>', 0),
    ('files_are_written_whole', 'sources/A.cpp', 'QSaveFile file(path);\nfile.commit();', 1),
    ('files_are_written_whole', 'app/A.cpp', 'std::ofstream(path) << text;', 1),
    ('files_are_written_whole', 'app/A.cpp', '#include <QFile>\nfile.open(QIODevice::WriteOnly | QIODevice::Text);', 1),
    ('files_are_written_whole', 'app/A.cpp', 'file.open(QFile::WriteOnly);', 1),
    ('files_are_written_whole', 'base/A.cpp', 'file.open(QIODeviceBase::WriteOnly);', 1),
    ('files_are_written_whole', 'net/A.cpp', 'm_file.open(QIODevice::Truncate |\n    QIODevice::WriteOnly);', 1),
    ('files_are_written_whole', 'net/A.cpp', 'file->open(QIODevice::Append);', 1),
    ('files_are_written_whole', 'net/A.cpp', 'file.open(path, QIODevice::ReadOnly); // not WriteOnly', 0),
    ('files_are_written_whole', 'app/A.cpp', '#include <QFile>\nQDataStream stream(&bytes, QIODevice::WriteOnly);', 0),
    ('files_are_written_whole', 'app/A.cpp', 'writeFile(path, bytes); transaction.commit(); // no QSaveFile', 0),
    ('files_are_written_whole', 'tests/support/A.cpp', '#include <QFile>\nfile.open(QIODevice::WriteOnly);', 0),
    ('nothing_is_unfinished', 'README.md', 'TO' + 'DO: say how', 1),
    ('nothing_is_unfinished', 'README.md', 'toDone', 0),
    ('no_paths_of_one_machine', 'packaging/a.sh', 'cd /ro' + 'ot/project', 1),
    ('no_paths_of_one_machine', 'tests/a.cpp', 'QFile file("/tm' + 'p/left");', 1),
    ('no_paths_of_one_machine', 'packaging/a.sh', 'mktemp -d "${TMPDIR:-/tmp}/a"; url=https://a.example/work/1', 0),
    ('texts_have_one_way', 'app/A.cpp', 'bundle.localizedString(u"Save"_s);', 1),
    ('texts_have_one_way', 'app/A.cpp', 'QString filled(const QString &format, const QString &text);', 1),
    ('texts_have_one_way', 'app/A.cpp', 'String::localize(u"Sent to %@"_s).replace("%@"_L1, name);', 1),
    ('texts_have_one_way', 'app/A.cpp', 'title.replace(u"%1$@"_s, name).replace("%d"_L1, count);', 2),
    ('texts_have_one_way', 'app/A.cpp', 'String::fill(String::localize(u"Sent to %@"_s), {name});', 0),
    ('layout_is_clang_format', 'app/A.cpp', 'int  a( ) ;\n', 1),
    ('layout_is_clang_format', 'app/A.cpp', 'int a();\n', 0),
)


class RulesTest(unittest.TestCase):
    def test_every_case_is_judged_right(self):
        for rule, path, text, expected in CASES:
            with self.subTest(rule=rule, text=text[:60]), tempfile.TemporaryDirectory() as root:
                os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
                with open(os.path.join(root, path), 'w', encoding='utf-8') as file:
                    file.write(text)
                found = list(RULES[rule](root))
                self.assertEqual(len(found), expected, found)
                self.assertTrue(all(where == path for where, _, _ in found))

    def test_every_rule_has_a_case_on_either_side(self):
        for rule in RULES:
            outcomes = {expected > 0 for name, _, _, expected in CASES if name == rule}
            self.assertEqual(outcomes, {True, False}, rule)


if __name__ == '__main__':
    unittest.main()
