#!/usr/bin/env python3
"""Turns the tables of `bench fft` into docs/fft.md and the plot docs/fft.png (by gnuplot).

Usage: tools/fft_report.py docs TABLE...
"""
import math
import re
import subprocess
import sys

ROW = re.compile(r"(\S.*?)\s{2,}(\d+)\s+([\d.]+)\s+(FFTW \w+|KissFFT)\s+([\d.]+)\s+([\d.]+)$")
FLOPS = {"C": 5.0, "R": 2.5}  # times N log2 N, the customary count


def read(lines):
    """{case: {n: {peer: (ours ns, peer ns, ratio)}}} in the order of the table."""
    cases = {}
    for line in lines:
        found = ROW.match(line.rstrip())
        if found:
            case, n, ours, peer, theirs, ratio = found.groups()
            sizes = cases.setdefault(case, {})
            sizes.setdefault(int(n), {})[peer] = (float(ours), float(theirs), float(ratio))
    return cases


def best(peers):
    """The ratio to the better of FFTW's plans."""
    return min(ratio for peer, (_, _, ratio) in peers.items() if peer != "KissFFT")


def mean(sizes, low, high):
    logs = [math.log(best(peers)) for n, peers in sizes.items() if low <= n <= high]
    return "%.2f" % math.exp(sum(logs) / len(logs)) if logs else ""


def report(cases, out):
    print("# Fourier transforms: measured figures\n", file=out)
    print("Time of the better of FFTW's measured and estimated plans over ours, interleaved in one\n"
          "process, medians of 41 pairs; made by `./kep bench fft` and `./kep bench fft --large`. Debian's\n"
          "FFTW uses AVX without fused operations, as the library does.\n", file=out)
    orders = sorted({n for sizes in cases.values() for n in sizes})
    print("| case | " + " | ".join(str(n.bit_length() - 1) for n in orders) + " |", file=out)
    print("|---" * (len(orders) + 1) + "|", file=out)
    for case, sizes in cases.items():
        row = ["%.2f" % best(sizes[n]) if n in sizes else "" for n in orders]
        print("| %s | %s |" % (case, " | ".join(row)), file=out)
    print("\nGeometric means; the blocked path begins at order 19 of 32f and 18 of 64f, one later for\n"
          "real data:\n\n| case | to 32 points | 64 to 2048 | from 4096 | blocked path |\n"
          "|---|---|---|---|---|", file=out)
    for case, sizes in cases.items():
        blocked = 2 ** ((19 if "32f" in case else 18) + (case[0] == "R"))
        print("| %s | %s | %s | %s | %s |" % (
            case, mean(sizes, 1, 32), mean(sizes, 64, 2048), mean(sizes, 4096, blocked - 1),
            mean(sizes, blocked, 2**40)), file=out)
    print("\n![GFLOP/s over order](fft.png)", file=out)


def plot(cases, path):
    chosen = [c for c in ("C_32fc forward", "C_64fc forward", "R_32f forward", "R_64f forward")
              if c in cases]
    script = ["set terminal pngcairo size 1200,900", f"set output '{path}'",
              "set multiplot layout 2,2", "set key bottom right", "set grid",
              "set xlabel 'order'", "set ylabel 'GFLOP/s'", "set yrange [0:*]"]
    for case in chosen:
        sizes, lines = cases[case], {"keps": [], "FFTW": [], "KissFFT": []}
        for n, peers in sizes.items():
            order = n.bit_length() - 1
            work = FLOPS[case[0]] * n * order
            fftw = {p: v for p, v in peers.items() if p != "KissFFT"}
            ours, theirs, _ = min(fftw.values(), key=lambda v: v[1])
            lines["keps"].append((order, work / ours))
            lines["FFTW"].append((order, work / theirs))
            if "KissFFT" in peers:
                lines["KissFFT"].append((order, work / peers["KissFFT"][1]))
        drawn = {k: v for k, v in lines.items() if v}
        script.append(f"set title '{case}' noenhanced")
        script.append("plot " + ", ".join(f"'-' with linespoints title '{k}'" for k in drawn))
        for points in drawn.values():
            script += ["%d %.3f" % p for p in points] + ["e"]
    script.append("unset multiplot")
    subprocess.run(["gnuplot"], input="\n".join(script) + "\n", text=True, check=True)


def main():
    folder, tables = sys.argv[1], sys.argv[2:]
    cases = read(line for table in tables for line in open(table))
    with open(folder + "/fft.md", "w") as out:
        report(cases, out)
    plot(cases, folder + "/fft.png")


if __name__ == "__main__":
    main()
