"""shell.py ZRBENCH: the shell as a person at a terminal meets it. Ends with 77 where there is no emulator of one."""
import os
import re
import sys
import tempfile
import time
import unittest

try:
    import pexpect
    import pyte
except ImportError as error:
    print("skipped:", error)
    sys.exit(77)

ZRBENCH = os.path.abspath(sys.argv.pop(1))
PROMPT = "zrbench>"


class Terminal:
    """zrbench on a terminal whose screen can be read."""

    def __init__(self, *arguments, columns=80, rows=50, **environment):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.raw = b""
        for name in ("NO_COLOR", "PAGER", "LESS"):
            os.environ.pop(name, None)
        self.child = pexpect.spawn(ZRBENCH, list(arguments), dimensions=(rows, columns), timeout=30,
                                   env={**os.environ, "TERM": "xterm", **environment})
        self.child.delaybeforesend = None

    def until(self, seen, what):
        """Reads until the screen satisfies `seen`."""
        deadline = time.monotonic() + 30
        while not seen():
            try:
                data = self.child.read_nonblocking(4096, timeout=max(0.1, deadline - time.monotonic()))
            except (pexpect.EOF, pexpect.TIMEOUT):
                raise AssertionError(f"never seen: {what}\n" + "\n".join(self.screen.display))
            self.raw += data
            self.stream.feed(data)

    def shows(self, pattern):
        self.until(lambda: re.search(pattern, self.text(), re.M), pattern)

    def line(self, pattern):
        """Waits until the line being typed looks like this."""
        self.until(lambda: re.fullmatch(pattern, self.current()), pattern)

    def text(self):
        return "\n".join(row.rstrip() for row in self.screen.display)

    def current(self):
        return self.screen.display[self.screen.cursor.y].rstrip()

    def type(self, keys):
        self.child.send(keys)

    def drop(self):
        """Drops the line. What is typed before the prompt is back would be echoed beside it."""
        self.child.send("\x03")
        self.line(PROMPT)

    def rest(self):
        """Reads until nothing has come for a second."""
        while True:
            try:
                data = self.child.read_nonblocking(4096, timeout=1)
            except pexpect.TIMEOUT:
                return
            self.raw += data
            self.stream.feed(data)

    def end(self):
        """Reads the rest; returns the exit status."""
        self.raw += self.child.read()
        self.child.close()
        return self.child.exitstatus


class Shell(unittest.TestCase):
    def setUp(self):
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(home.name)
        os.environ["HOME"] = home.name

    def start(self, *arguments, **environment):
        terminal = Terminal("shell", *arguments, **environment)
        terminal.line(PROMPT)
        return terminal

    def test_tab_completes_every_kind_of_argument(self):
        os.mkdir("cases")
        open("cases/first.json", "w").close()
        terminal = self.start("--up")
        for typed, completed in (
            ("vlan cr\t", "vlan create +UNIT VLAN"),
            ("vlan add 0 3\t", "vlan add 0 30 +PORT tagged.untagged"),
            ("vlan add 0 10 1\t5 ta\t", "vlan add 0 10 15 tagged"),
            ("fail l2sw_port_macFo\t", "fail l2sw_port_macForceLink.*= +CALL"),
            ("source ca\tf\t", "source cases/first.json"),
            ('acl add 1 {"ports": "3", "ip\t', r'acl add 1 \{"ports": "3", "ipProto": +RULE'),
            ("acl add 1 {par\t", r'acl add 1 \{"partition": +RULE'),
            ("frame send 0 0 srcI\t", "frame send 0 0 srcIp= +FRAME"),
            ("board 1 link 1\t5 u\t", "board 1 link 15 up +LINE"),
            ("expect chip\tvlan cr\t1 2\t", "expect chip-failed vlan create 1 20"),
            ("stp state 1 1 2 bl\t", "stp state 1 1 2 blocking"),
            ("storm ", r"storm +init\|set\|show"),
            ("help vlan cr\t", r"help vlan create +\[TOPIC\]"),
        ):
            terminal.type(typed)
            terminal.line(f"{PROMPT} {completed}")
            terminal.drop()
        terminal.type("vlan list 0 \t\t")
        terminal.line(PROMPT + r" vlan list 0 +\[FIRST\] \[LAST\]")
        terminal.drop()
        terminal.type("vlan members 0 \t")
        terminal.shows(r"^  1   10  20  30$")
        terminal.drop()
        terminal.type("vlan members 7 \t")
        terminal.shows(r"^  VLAN: a ")

    def test_a_question_mark_tells_what_can_stand_there(self):
        terminal = self.start("--up")
        terminal.type("port setloop 0 0 ?")
        terminal.shows(r"^  none\|mac\|pcs\|remote\|remote4: one of")
        terminal.line(PROMPT + r" port setloop 0 0 +none\|mac\|pcs\|remote\|remote4")
        terminal.drop()
        terminal.type('acl add 1 {"a?')
        terminal.line(PROMPT + r' acl add 1 \{"a\? +RULE')
        terminal.drop()
        terminal.type("frame send 0 0 ?")
        terminal.shows(r"^  FRAME: NAME=VALUE, or hexadecimal; a text of dst, src, vlan,")
        terminal.drop()
        terminal.type("storm?")
        terminal.shows(r"^storm init UNIT +initialises storm control")

    def test_control_c_drops_the_line_and_control_r_finds_an_old_one(self):
        terminal = self.start("--up")
        terminal.type("vlan create 0 77\n")
        terminal.shows(r"^ +1  vlan create 0 77 +ok")
        terminal.line(PROMPT)
        self.assertRegex(terminal.text(), rf"(?m)^{PROMPT} vlan create 0 77$")  # without a hint
        terminal.type("nonsense\x03")
        terminal.shows(r"nonsense.*\^C")
        terminal.line(PROMPT)
        terminal.type("\x12ate 0 7")
        terminal.shows("bck:ate 0 7")
        terminal.type("\x05\x7f8\n")
        terminal.shows(r"^ +2  vlan create 0 78 +ok")
        terminal.line(PROMPT)
        terminal.type("exit\n")
        self.assertEqual(terminal.end(), 0)
        with open(".zrbench_history", encoding="ascii") as history:
            self.assertIn("vlan\\040create\\0400\\04077", history.read())

    def test_long_output_is_paged_and_the_session_outlives_the_pager(self):
        terminal = self.start("--up")
        for interrupt in ("", "\x03"):
            terminal.type("help\n")
            terminal.shows(r"^:$")
            terminal.type(interrupt)
            for _ in range(20):  # an interrupted pager may drop what is typed
                terminal.type("q")
                terminal.rest()
                if terminal.current().startswith(PROMPT):
                    break
            terminal.type("\x15")  # a q too many
            terminal.line(PROMPT)
        terminal.type("vlan members 2 20\n")
        terminal.shows("members=3-4")
        unpaged = self.start("--up", PAGER="")
        unpaged.type("help\nquit\n")
        self.assertEqual(unpaged.end(), 0)
        missing = self.start("--up", PAGER="no-such-pager")
        missing.type("help\nquit\n")
        self.assertEqual(missing.end(), 0)
        self.assertIn(b"vlan tag-mode UNIT PORT MODE", missing.raw)

    def test_nothing_is_wider_than_the_terminal(self):
        commands = ("help; acl add 1 {\"ports\": \"0-4\", \"srcIp\": \"192.0.2.0/24\", \"etherType\": 2048, \"action\": "
                    "\"drop\"}; trace calls; frame send 0 0 arp=request srcIp=192.0.2.1 dstIp=192.0.2.2; chip init 7; "
                    "vlan create 1 4096; ops; port show 0; acl list 1; qos show 0; storm show 0; dump; port setspeed 0 0 x; expect x ops; fly; vlan fly")
        for columns in (80, 60):
            for arguments, status in ((("--color", "shell", "--up", "-c", commands), 2), (("--help",), 0),
                                      (("commands",), 0), (("ops",), 0)):
                terminal = Terminal(*arguments, columns=columns, PAGER="")
                self.assertEqual(terminal.end(), status)
                for line in re.sub(rb"\x1b\[[0-9;]*m", b"", terminal.raw).decode().split("\r\n"):
                    self.assertLessEqual(len(line), columns, line)

    def test_colour_is_for_terminals_that_want_it(self):
        for environment, coloured in (({}, True), ({"NO_COLOR": "1"}, False), ({"NO_COLOR": ""}, True),
                                      ({"TERM": "dumb"}, False)):
            terminal = Terminal("shell", "-c", "chip init 1", **environment)
            self.assertEqual(terminal.end(), 0)
            self.assertEqual(b"\x1b[32mok" in terminal.raw, coloured, environment)
        dumb = Terminal("shell", TERM="dumb")
        dumb.line(PROMPT)
        dumb.type("chip init 1\nhelp\nquit\n")
        self.assertEqual(dumb.end(), 0)
        self.assertNotIn(b"\x1b", dumb.raw)


if __name__ == "__main__":
    result = unittest.main(exit=False).result
    if report := os.environ.get("GTEST_OUTPUT", "").removeprefix("xml:"):
        os.makedirs(os.path.dirname(report), exist_ok=True)
        with open(report, "w", encoding="ascii") as counts:
            counts.write(f'<testsuites tests="{result.testsRun}" failures="{len(result.failures)}" '
                         f'errors="{len(result.errors)}"/>\n')
    sys.exit(not result.wasSuccessful())
