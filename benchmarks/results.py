"""What a benchmark says: one row for each goal."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Bound:
    """A goal: a number that must not be passed."""

    limit: float
    is_upper: bool

    def holds_for(self, number):
        return number <= self.limit if self.is_upper else number >= self.limit

    def text(self, unit):
        return f"{'at most' if self.is_upper else 'at least'} {_number(self.limit)} {unit}".rstrip()


def at_most(limit):
    return Bound(limit, is_upper=True)


def at_least(limit):
    return Bound(limit, is_upper=False)


@dataclass(frozen=True)
class Row:
    """One line of the table. `ratio` is what the goal is about when there is a peer, else `value`."""

    name: str
    what: str
    value: float
    unit: str
    goal: Bound
    against: str = ""
    against_value: float | None = None
    ratio: float | None = None

    @property
    def met(self):
        return self.goal.holds_for(self.value if self.ratio is None else self.ratio)

    def against_text(self):
        if self.against_value is None:
            return self.against
        return f"{self.against}: {_number(self.against_value)} {self.unit}"

    def goal_text(self):
        return self.goal.text(self.unit if self.ratio is None else "x")

    def as_json(self):
        return {
            "name": self.name,
            "value": self.value,
            "unit": self.unit,
            "against": self.against_text(),
            "ratio": self.ratio,
            "goal": self.goal_text(),
            "met": self.met,
        }


def compared(name, what, value, unit, peer, peer_value, goal, inverse=False):
    """A row whose goal is about the value as a multiple of the peer's, or with `inverse` about the
    peer's as a multiple of the value: how many times faster than the peer."""
    ratio = peer_value / value if inverse else value / peer_value
    return Row(name, what, value, unit, goal, peer, peer_value, ratio)


def print_table(rows):
    heads = ("name", "what", "Talvo", "peer or floor", "ratio", "goal", "met")
    lines = [heads]
    for row in rows:
        lines.append((
            row.name, row.what, f"{_number(row.value)} {row.unit}", row.against_text(),
            "" if row.ratio is None else _number(row.ratio), row.goal_text(),
            "yes" if row.met else "NO",
        ))
    widths = [max(len(line[i]) for line in lines) for i in range(len(heads))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())


def _number(value):
    if value == 0 or abs(value) >= 100:
        return f"{value:.0f}"
    return f"{value:.3g}"
