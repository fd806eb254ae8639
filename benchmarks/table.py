"""The figures, and whether they reach what they should."""
import statistics


class Figures:
    """Several measurements of one thing."""

    def __init__(self, values):
        self.values = list(values)

    @property
    def median(self):
        return statistics.median(self.values)

    def text(self, unit):
        if len(self.values) == 1:
            return f"{number(self.median)} {unit}"
        low, high = min(self.values), max(self.values)
        return f"{number(self.median)} {unit} ({number(low)} to {number(high)}, n={len(self.values)})"


def number(value):
    if value != 0 and abs(value) < 10:
        return f"{value:.2f}"
    return f"{value:,.0f}" if abs(value) >= 1000 else f"{value:.1f}"


class Table:
    """Prints each line as soon as it is known."""

    def __init__(self):
        self.missed = []

    def head(self, title):
        print(f"\n{title}", flush=True)

    def row(self, name, text):
        print(f"  {name:<46} {text}", flush=True)

    def figures(self, name, values, unit):
        figures = Figures(values)
        self.row(name, figures.text(unit))
        return figures.median

    def target(self, name, value, unit, most=None, least=None):
        good = (most is None or value <= most) and (least is None or value >= least)
        wanted = f"at most {most}" if least is None else f"at least {least}"
        verdict = "reached" if good else "NOT REACHED"
        self.row(name, f"{number(value)} {unit}  [{wanted}: {verdict}]")
        if not good:
            self.missed.append(name)

    def closing(self):
        print(f"\nNot reached: {'; '.join(self.missed)}" if self.missed
              else "\nAll figures are reached.", flush=True)
