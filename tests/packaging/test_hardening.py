"""The programs that are shipped have the protections that the compiler and the linker can give, read off the finished files."""

import platform
import re
import shutil
import unittest

import release


def readelf(option, program):
    return release.output_of("readelf", "--wide", option, program)


@release.needed
@unittest.skipUnless(shutil.which("readelf"), "readelf is not installed")
class Hardening(unittest.TestCase):
    def each_program(self):
        for program in release.PROGRAMS:
            with self.subTest(program=program.name):
                yield program

    def test_can_be_loaded_anywhere(self):
        for program in self.each_program():
            self.assertRegex(readelf("--file-header", program), r"Type: +DYN \(Position-Independent Executable file\)")

    def test_resolve_all_calls_at_the_start_and_then_lock_their_table(self):
        for program in self.each_program():
            self.assertRegex(readelf("--program-headers", program), r"GNU_RELRO ")
            self.assertRegex(readelf("--dynamic", program), r"\(FLAGS\) +BIND_NOW")

    def test_have_a_stack_that_is_not_run_from(self):
        for program in self.each_program():
            self.assertRegex(readelf("--program-headers", program), r"GNU_STACK .* RW +0x")

    def test_notice_an_overwritten_stack(self):
        for program in self.each_program():
            self.assertIn("__stack_chk_fail", readelf("--dyn-syms", program))

    def test_notice_a_call_that_would_write_past_a_buffer(self):
        for program in self.each_program():
            self.assertRegex(readelf("--dyn-syms", program), r"__v?f?s?n?printf_chk|__mem\w+_chk|__fread_chk")

    @unittest.skipUnless(platform.machine() == "x86_64", "the instruction is another one here")
    def test_mark_where_indirect_calls_may_go(self):
        """The compilers and start files of Debian mark nothing of their own."""
        for program in self.each_program():
            code = release.output_of("objdump", "--disassemble", "--no-show-raw-insn", "--section=.text", program)
            self.assertGreater(len(re.findall(r"\tendbr64", code)), 100)


if __name__ == "__main__":
    unittest.main()
