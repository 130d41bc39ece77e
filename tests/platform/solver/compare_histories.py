#!/usr/bin/env python3
"""Asks another solver about the histories that solver_test wrote (SOLVER_HISTORIES=FILE): what is required must be
possible, must be met by the values found, and the wishes of the highest priority must be missed by as little.

usage: compare_histories.py FILE
"""
import sys

try:
    import kiwisolver
except ImportError:
    print("skipped: python3-kiwisolver is not installed")
    sys.exit(0)


def violation(constraint, values):
    _, relation, constant, terms = constraint
    total = constant + sum(coefficient * values[unknown] for unknown, coefficient in terms)
    return abs(total) if relation == 0 else max(0.0, -relation * total if relation > 0 else total)


def ask(constraints, count):
    """The other solver's values for what is required and, summed up, for the wishes of the highest priority."""
    variables = [kiwisolver.Variable(str(i)) for i in range(count)]
    solver = kiwisolver.Solver()
    highest = max((c[0] for c in constraints if c[0] < 1000), default=0)
    for priority, relation, constant, terms in constraints:
        if priority < 1000 and priority != highest:
            continue
        total = sum((coefficient * variables[unknown] for unknown, coefficient in terms), 0 * variables[0]) + constant
        constraint = total == 0 if relation == 0 else total <= 0 if relation < 0 else total >= 0
        solver.addConstraint(constraint | ("required" if priority >= 1000 else "strong"))
    solver.updateVariables()
    return [variable.value() for variable in variables], highest


def main():
    constraints, histories = [], 0
    for line in open(sys.argv[1]):
        words = line.split()
        if words[0] == "constraint":
            numbers = [float(word) for word in words[4:]]
            terms = [(int(unknown), coefficient) for unknown, coefficient in zip(numbers[::2], numbers[1::2])]
            constraints.append((float(words[1]), int(words[2]), float(words[3]), terms))
            continue
        found = [float(word) for word in words[1:]]
        other, highest = ask(constraints, len(found))
        histories += 1
        for priority in (1000, highest):
            level = [c for c in constraints if c[0] == priority]
            own = sum(violation(c, found) for c in level)
            theirs = sum(violation(c, other) for c in level)
            if own > theirs + 1e-3:
                sys.exit(f"history {histories}: priority {priority} is missed by {own}, by the other solver by {theirs}")
        constraints = []
    print(f"{histories} histories agree")


if __name__ == "__main__":
    main()
