#!/usr/bin/env python3
"""Writes the seed corpus of RegexFuzzer: flags, option, pattern length, pattern, subject (one byte a unit)."""
import os

SEEDS = [
    (0, 0, r"[\w\.+-]+@[\w\.-]+\.[\w\.-]+", "mail joe@site.org now"),
    (0, 1, r"(\w+)\s+\1", "the the end"),
    (8, 2, r"(?i)(?:error|warning|fatal)", "An ERROR and a Warning"),
    (0, 3, r"(?<=\$)\d+(?:\.\d\d)?", "costs $12.50 or $7"),
    (16, 4, r"(a|ab)(c|bcd)(d*)", "abcd"),
    (2, 0x85, r"^(?:(?<n>\d+)|x)$(?(n)a|b)", "12\nx\n"),
    (32, 1, "a b # comment\n (?#c)[ ]", "ab "),
    (4, 2, r"\G\d(?R<1>)?", "1234"),
    (0, 3, r"\((?:[^()]|(?R))*\)", "((a)(b(c)))"),
    (1, 4, r"(?>a+|b)*+(?=c)(?!d)(?<!e)[[:alpha:][:^digit:]]{2,5}?", "aaabbcc"),
    (0, 0, r"\x{1F600}\u00e9\Q.*\E[\x41-\x5a]", "\xf0x"),
    (8, 1, r"k\w+\b", "\xe0elvin"),
    (0, 2, r"((((((((((a))))))))))\10", "aa"),
    (0, 3, r"(a+)+b", "aaaaaaaaaaaaaaaaaaaaaaaac b"),
    (0, 4, r"[z-a(?<1a>x)(?|a)\x{zz}*{,2}", "x"),
]

def main():
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")
    os.makedirs(out, exist_ok=True)
    for number, (flags, option, pattern, subject) in enumerate(SEEDS):
        data = bytes([flags, option, len(pattern)]) + pattern.encode("latin-1") + subject.encode("latin-1")
        with open(os.path.join(out, "seed-%02d" % number), "wb") as f:
            f.write(data)

if __name__ == "__main__":
    main()
