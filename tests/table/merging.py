"""What --merge and --within must print, by plain sums over the N-grams of the file.

Used by read_back.py.
"""

import collections


def pair_of(block):
    """The occurrence that a block stands for: dependent and head with lemma and tag, relation, whether the head is first."""
    first, second = ((lemma, tag, int(parent), relation) for _, lemma, tag, parent, relation in block["members"])
    dependent, head = (second, first) if first[2] == 0 else (first, second)
    return {"dependent": dependent[0], "dependent tag": dependent[1], "head": head[0], "head tag": head[1],
            "relation": dependent[3], "head first": first[2] == 0}


def merged_rows(blocks, merge, within):
    """The rows as dictionaries of the columns that can be told from sums, in order of first sight."""
    pairs = []
    for block in blocks:
        pair = pair_of(block)
        if "order" in merge:
            pair["head first"] = False
        if "tag" in merge:
            pair["dependent tag"] = pair["head tag"] = b"*"
        if "relation" in merge:
            pair["relation"] = b"*"
        pairs.append((pair, block["cells"][-1]))

    dependent = ["dependent", "dependent tag", "head first"] + ([] if within == "head-relation" else ["relation"])
    head = ["head", "head tag", "head first"] + ([] if within is None else ["relation"])
    sample = ["relation"] if within == "relation" else []

    def sums_of(fields):
        sums = collections.Counter()
        for pair, frequency in pairs:
            sums[tuple(pair[field] for field in fields)] += frequency
        return lambda pair: sums[tuple(pair[field] for field in fields)]

    everything = ["dependent", "dependent tag", "head", "head tag", "relation", "head first"]
    frequency_of, total_of = sums_of(everything), sums_of(sample)
    of_dependent, of_head = sums_of(dependent), sums_of(head)
    rows = {}
    for pair, _ in pairs:
        f, total, margins = frequency_of(pair), total_of(pair), [of_dependent(pair), of_head(pair)]
        words = [(pair["dependent"], pair["dependent tag"], pair["relation"]), (pair["head"], pair["head tag"], b"Head")]
        if pair["head first"]:
            margins.reverse()
            words.reverse()
        row = {"frequency": f, "marginal1": margins[0], "marginal2": margins[1], "total": total,
               "cell0": total - sum(margins) + f, "cell1": margins[1] - f, "cell2": margins[0] - f, "cell3": f}
        row.update({"parent1": 0, "parent2": 1} if pair["head first"] else {"parent1": 2, "parent2": 0})
        row = {name: b"%d" % value for name, value in row.items()}
        for k, word in enumerate(words, 1):
            row.update(zip((f"lemma{k}", f"tag{k}", f"relation{k}"), word))
        rows.setdefault(tuple(pair[field] for field in everything), row)
    return list(rows.values())
