"""What the benchmarks share: where things are, how programs are run."""

import json
import statistics
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"
PROGRAMS = BUILD / "benchmarks"
DATA = ROOT / "build/bench"

median = statistics.median


def quantile(values, share):
    ordered = sorted(values)
    return ordered[int(share * (len(ordered) - 1))]


def output_of(*command, seconds=600, environment=None):
    """Runs a program to its end and gives back what it printed."""
    return subprocess.run(
        [str(part) for part in command], check=True, stdout=subprocess.PIPE, text=True,
        timeout=seconds, env=environment,
    ).stdout


def json_of(*command, **options):
    return json.loads(output_of(*command, **options))


def generated(kind, *parameters):
    """A file of generated data, made once a run."""
    path = DATA / f"{kind}-{'-'.join(map(str, parameters))}"
    if path not in _made:
        DATA.mkdir(parents=True, exist_ok=True)
        output_of(PROGRAMS / "GenerateData", kind, *parameters, path)
        _made.add(path)
    return path


_made = set()


def google_benchmark(program, *arguments, repetitions=5):
    """The runs of each benchmark of a program, by name, in interleaved order."""
    output = DATA / f"{program}.json"
    DATA.mkdir(parents=True, exist_ok=True)
    output_of(
        PROGRAMS / program, *arguments, f"--benchmark_repetitions={repetitions}",
        "--benchmark_enable_random_interleaving=true", "--benchmark_out_format=json",
        f"--benchmark_out={output}", seconds=1200,
    )
    runs = {}
    for run in json.loads(output.read_text(encoding="utf-8"))["benchmarks"]:
        if run["run_type"] == "iteration":
            name = run["run_name"].removesuffix("/iterations:1/manual_time")
            runs.setdefault(name, []).append(run)
    return runs


def packages(*lists):
    """Installs the Debian packages of a list that only some benchmarks need."""
    subprocess.run([ROOT / "packaging/linux/install-packages", *lists], check=True)
