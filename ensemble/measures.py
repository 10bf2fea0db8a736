"""Measures of an aggregate's shape, beyond the statistics of sarkelo-grow."""
import numpy as np

CENTRES = 200  # of the two-point correlation


def gyration(positions):
    """The radius of gyration of the first particles, at round numbers."""
    counts = np.arange(1, len(positions) + 1)
    middles = np.cumsum(positions, axis=0) / counts[:, None]
    squares = np.cumsum((positions**2).sum(1)) / counts - (middles**2).sum(1)
    round_numbers = [step * 10**power for power in range(2, 10) for step in (1, 2, 5)]
    numbers = [n for n in round_numbers if n < len(positions)] + [len(positions)]
    return [[n, float(np.sqrt(squares[n - 1]))] for n in numbers]


def correlation(positions):
    """The mean number of other particles within a distance of a particle, for distances that double."""
    distances = 2.0 ** np.arange(1, 11)
    centres = positions[np.linspace(0, len(positions) - 1, min(CENTRES, len(positions))).astype(int)]
    within = np.zeros(len(distances))
    for centre in centres:
        squares = ((positions - centre) ** 2).sum(1)
        within += [np.count_nonzero(squares <= distance**2) - 1 for distance in distances]
    return [[float(distance), float(count)] for distance, count in zip(distances, within / len(centres))]


def penetration(positions):
    """How far behind the foremost particle at that time the second half of the particles stuck, on average: by distance from the origin, and by z."""
    later = len(positions) // 2
    depths = {}
    for name, along in (("radial", np.sqrt((positions**2).sum(1))), ("z", positions[:, 2])):
        behind = np.maximum.accumulate(along)[:-1] - along[1:]
        depths[name] = float(np.maximum(behind[later:], 0).mean()) if later < len(behind) else None
    return depths


def cubic_anisotropy(positions):
    """The mean of (x^4 + y^4 + z^4) / r^4, less that of a ball, 3/5: 2/5 along the axes, -4/15 towards the corners of a cube."""
    squares = (positions**2).sum(1)
    apart = squares > 0
    return float(((positions[apart] ** 4).sum(1) / squares[apart] ** 2).mean() - 0.6) if apart.any() else None


def effective_trees(parents):
    """The effective number of trees (one for each root): one over the sum of their squared shares of the particles."""
    ancestors = np.where(parents < 0, np.arange(len(parents)), parents)
    while True:
        further = ancestors[ancestors]
        if np.array_equal(further, ancestors):
            break
        ancestors = further
    shares = np.unique(ancestors, return_counts=True)[1] / len(parents)
    return float(1 / (shares**2).sum())
