# SPDX-License-Identifier: MIT
# Runs the peers in turn, a process for each number, and prints the table of docs/benchmarks.md.
# usage: table.py FOLDER-OF-PROGRAMS [ROUNDS]
import os
import statistics
import subprocess
import sys
import time

PEERS = [('bare', 'the bare loop'), ('module', 'the module'), ('qglwidget', 'N QGLWidgets'),
         ('qopenglwidget', 'N QOpenGLWidgets'), ('qglviewer', 'N viewers of libQGLViewer'),
         ('vtk', 'VTK, N renderers in its Qt widget'),
         ('osg', 'OpenSceneGraph, composite viewer'), ('coin', 'Coin, N render actions'),
         ('pyqtgraph', 'N views of pyqtgraph')]
WORKS = ['all', 'one', 'rest']
ROWS = [5, 10]  # where the module's own grid is a square, too


def run(folder, peer, rows, work):
    """The numbers that one process prints; none if it fails, which is said."""
    here = os.path.dirname(os.path.abspath(__file__))
    command = ([f'{folder}/{peer}_peer'] if peer != 'pyqtgraph'
               else [sys.executable, '-B', f'{here}/pyqtgraph_peer.py'])
    try:
        done = subprocess.run(command + [str(rows), work, str(time.time_ns())], text=True,
                              capture_output=True, timeout=180)
    except subprocess.TimeoutExpired:
        print(f'{peer} {rows} {work}: too slow', file=sys.stderr)
        return None
    if done.returncode != 0:
        print(f'{peer} {rows} {work}: {done.returncode}', done.stderr[-1000:], file=sys.stderr)
        return None
    return {name: float(value) for name, value in
            (line.split() for line in done.stdout.splitlines() if len(line.split()) == 2)}


def ratios(found, peer, rows, work, number):
    """To the bare loop, of the rounds in which both ran."""
    return [mine[peer, rows, work][number] / mine['bare', rows, work][number] for mine in found
            if mine.get((peer, rows, work)) and mine.get(('bare', rows, work))]


def median_ratio(*of):
    return statistics.median(ratios(*of)) if ratios(*of) else None


def farthest(found, peer, rows, number):
    """Of all works the median ratio that is farthest from 1; none if one of them never ran."""
    of = [median_ratio(found, peer, rows, work, number) for work in WORKS]
    return None if None in of else max(of, key=lambda ratio: abs(ratio - 1))


def with_range(*of):
    """The median, and between which ends it lies."""
    all_of = ratios(*of)
    return '-' if not all_of else f'{median_ratio(*of):.2f} ({min(all_of):.2f} to {max(all_of):.2f})'


def median(found, peer, rows, work, number):
    values = [mine[peer, rows, work][number] for mine in found if mine.get((peer, rows, work))]
    return statistics.median(values) if values else None


def text(value, form):
    return '-' if value is None else form.format(value)


def main():
    folder, rounds = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 5
    found = []
    for i in range(rounds):
        found.append({})
        for rows in ROWS:
            for work in WORKS:
                for peer, _ in PEERS:
                    found[-1][peer, rows, work] = run(folder, peer, rows, work)
        print(f'round {i + 1} of {rounds}', file=sys.stderr)
    bad = False
    for rows in ROWS:
        bare = [median(found, 'bare', rows, 'all', n) for n in ('wall', 'cpu')]
        print(f"\n{rows * rows} tiles; the bare loop takes {text(bare[0], '{:.2f}')} ms by the "
              f"clock and {text(bare[1], '{:.2f}')} ms on processors for a frame.\n")
        print('| | every tile | CPU | one tile | CPU | at rest, ms/s | first frame | memory, MiB '
              '| lit pixels | grey |')
        print('|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|')
        for peer, name in PEERS:
            lit, grey = (farthest(found, peer, rows, number) for number in ('lit', 'grey'))
            same = lit is not None and abs(lit - 1) <= 0.02 and abs(grey - 1) <= 0.02
            bad = bad or not same
            cells = [with_range(found, peer, rows, work, number)
                     for work in ('all', 'one') for number in ('wall', 'cpu')]
            cells += [text(median(found, peer, rows, 'rest', 'cpu'), '{:.1f}'),
                      text(median_ratio(found, peer, rows, 'all', 'first'), '{:.2f}'),
                      text(median(found, peer, rows, 'all', 'memory'), '{:.0f}'),
                      text(lit, '{:.3f}'), text(grey, '{:.3f}') + ('' if same else ' (differs)')]
            print(f'| {name} | ' + ' | '.join(cells) + ' |')
    if bad:
        sys.exit('a peer failed, or shows something else: its row says nothing')


main()
