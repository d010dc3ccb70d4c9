"""What the rules do with small sources. Run by scripts/checks/mutation before anything else."""
import io
import unittest

import rules


def made(source):
    """The sources that come of `source`, one for each change."""
    return [source[: c.start] + c.new + source[c.end :] for c in rules.changes(source)]


class RulesTest(unittest.TestCase):
    def test_a_binary_operator_is_exchanged(self):
        self.assertEqual(made("x = a == b;"), ["x = a != b;"])

    def test_the_brackets_of_a_template_and_a_reference_are_no_operators(self):
        self.assertEqual(made("std::vector<int> f(A&& a);"), [])

    def test_a_condition_is_negated_and_held_fast_both_ways(self):
        self.assertEqual(made("if (a) {\n}"), ["if (!(a)) {\n}", "if (false) {\n}", "if (true) {\n}"])

    def test_of_a_condition_behind_a_declaration_the_condition_alone_is_changed(self):
        self.assertEqual(made("if (int a = f(); a) {\n}")[0], "if (int a = f(); !(a)) {\n}")

    def test_a_condition_that_declares_a_variable_stays(self):
        self.assertEqual(made("if (int* a = f()) {\n}"), [])

    def test_a_call_and_an_assignment_are_left_out_and_a_declaration_is_not(self):
        self.assertEqual(made("int a = f(); b.c(d); e->f = g;"), ["int a = f(); ; e->f = g;", "int a = f(); b.c(d); ;"])

    def test_a_choice_is_turned_round(self):
        self.assertEqual(made("auto a = b ? f(c, d) : e;"), ["auto a = b ? e : f(c, d);"])

    def test_a_text_is_lengthened_and_emptied(self):
        self.assertEqual(made('auto a = L"b";'), ['auto a = L"";', 'auto a = L"b~";'])

    def test_a_number_becomes_nothing_and_one_more(self):
        self.assertEqual(made("int a = 7;"), ["int a = (7 + 1);", "int a = 0;"])

    def test_a_return_value_is_emptied_and_a_truth_value_turned_round(self):
        self.assertEqual(made("return a;"), ["return {};"])
        self.assertEqual(made("return true;"), ["return false;"])

    def test_comments_includes_and_static_assertions_stay(self):
        self.assertEqual(made('// a == b\n#include "a"\n/* c(); */\nstatic_assert(1 == 2, "a");\n'), [])


def run():
    """Whether all tests pass; tells what fails."""
    told = io.StringIO()
    tests = unittest.defaultTestLoader.loadTestsFromTestCase(RulesTest)
    passed = unittest.TextTestRunner(stream=told).run(tests).wasSuccessful()
    if not passed:
        print(told.getvalue())
    return passed
