"""The window as the user makes it larger and smaller."""

import unittest

from scenario import Scenario

LARGE = (900, 640)
SMALLEST = (760, 520)


class Resizing(Scenario):
    def test_no_window_is_smaller_than_what_it_shows_needs(self):
        window = self.first_start()
        for width, height in [(300, 640), (900, 200), (1, 1)]:
            with self.subTest(width=width, height=height):
                window.resize(*LARGE)
                window.wait_until(lambda: window.size() == LARGE, f"a window of {LARGE}")
                window.resize(width, height)
                expected = max(width, SMALLEST[0]), max(height, SMALLEST[1])
                window.wait_until(lambda: window.size() == expected, f"a window of {expected}")
        self.close()


if __name__ == "__main__":
    unittest.main()
