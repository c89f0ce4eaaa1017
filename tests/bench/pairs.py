"""Summaries of many measured pairs."""

import dataclasses
import statistics


@dataclasses.dataclass
class Pairs:
    """Measured pairs: the reference first, Kardel second."""
    found: list[tuple]

    def medians(self, what: str) -> tuple[float, float]:
        """Of one figure, for the reference and for Kardel."""
        return tuple(statistics.median(getattr(pair[side], what) for pair in self.found) for side in (0, 1))

    def ratios(self, what: str) -> tuple[float, float, float]:
        """The median, the lower and the upper quartile of Kardel to reference, pair by pair."""
        return spread([getattr(program, what) / getattr(reference, what) for reference, program in self.found])


def spread(figures: list[float]) -> tuple[float, float, float]:
    """The median, the lower and the upper quartile."""
    lower, middle, upper = statistics.quantiles(figures, n=4, method="inclusive")
    return middle, lower, upper
