#!/usr/bin/env python3
"""The numbers of tests/Raster/lmxFieldStatisticsTest.cpp, computed by other means than the library's: areas by the sine
of each edge, sums by math.fsum, which rounds once, polygons by winding numbers.

    fieldStatistics.py <folder of sst_january.rst>
"""
import math
import struct
import sys


def area(north, south, west, east):
    return math.radians(east - west) * (math.sin(math.radians(north)) - math.sin(math.radians(south)))


def statistics(cells):
    """cells: (value or None, area)"""
    cells = [cell for cell in cells if cell[1] > 0]
    values = [cell for cell in cells if cell[0] is not None]
    whole = math.fsum(weight for _, weight in cells)
    covered = math.fsum(weight for _, weight in values)
    return (len(cells), len(values), (whole - covered) / whole if whole else 0,
            math.fsum(value * weight for value, weight in values) / covered,
            min(value for value, _ in values), max(value for value, _ in values))


def grid(width, height, first, value, weight):
    """first: longitude of the western edge"""
    for row in range(height):
        for column in range(width):
            north, south = 90 - 180 * row / height, 90 - 180 * (row + 1) / height
            west, east = first + 360 * column / width, first + 360 * (column + 1) / width
            yield value(row, column), weight(north, south, west, east)


def whole(north, south, west, east):
    return area(north, south, west, east)


def rectangle(top, bottom, left, right):
    def weight(north, south, west, east):
        n, s, w, e = min(north, top), max(south, bottom), max(west, left), min(east, right)
        return area(n, s, w, e) if n > s and e > w else 0
    return weight


def winding(x, y, ring):
    turns = 0
    for (ax, ay), (bx, by) in zip(ring, ring[1:] + ring[:1]):
        side = (bx - ax) * (y - ay) - (x - ax) * (by - ay)
        if ay <= y < by and side > 0:
            turns += 1
        elif by <= y < ay and side < 0:
            turns -= 1
    return turns


def polygon(*rings):
    def weight(north, south, west, east):
        inside = sum(winding((west + east) / 2, (north + south) / 2, ring) != 0 for ring in rings) % 2
        return area(north, south, west, east) if inside else 0
    return weight


def pattern(row, column):
    return None if row * column % 7 == 3 else ((row * 37 + column * 11) % 101 - 50) / 4


def sea(folder):
    with open(folder + "/sst_january.rst", "rb") as file:
        cells = struct.unpack("<16200f", file.read())
    return lambda row, column: cells[row * 180 + column] if abs(cells[row * 180 + column]) < 1e30 else None


def show(name, numbers):
    print(name, *(("%.17g" if isinstance(number, float) else "%d") % number for number in numbers))


if __name__ == "__main__":
    triangle = [(-50.0, -40.0), (95.0, 10.0), (20.0, 77.0)]
    hole = [(5.0, 5.0), (40.0, 5.0), (40.0, 40.0), (5.0, 40.0)]
    show("whole", statistics(grid(36, 18, -180, pattern, whole)))
    show("rectangle", statistics(grid(36, 18, -180, pattern, rectangle(71, -33.5, -17, 57.5))))
    show("polygon", statistics(grid(36, 18, -180, pattern, polygon(triangle))))
    show("hole", statistics(grid(36, 18, -180, pattern, polygon(triangle, hole))))
    show("sea", statistics(grid(180, 90, 0, sea(sys.argv[1]), whole)))
    show("north sea", statistics(grid(180, 90, 0, sea(sys.argv[1]), rectangle(61.5, 50.25, 0.5, 9))))
