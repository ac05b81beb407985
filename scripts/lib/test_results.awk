# Reads CTest's log (build/PRESET/Testing/Temporary/LastTest.log): prints the tests that were skipped, with their reasons, and as
# its last line how many passed, failed and were skipped: "OF: ...", with -v of=OF. With -v slowest=N, the N tests that took
# longest stand before.

function end_of_entry() {
    if (entry == "") return
    if (passed) {
        if (!is_googletest) ++count["passed"]
    } else if (!failed_here) {  # it crashed, ran out of time, or is no GoogleTest
        ++count["failed"]
    }
}

function milliseconds(text) {
    gsub(/[^0-9]/, "", text)
    return text + 0
}

/^[0-9]+\/[0-9]+ Testing: / {
    end_of_entry()
    entry = $3
    passed = failed_here = is_googletest = 0
    reason = reading_reason = ""
}
/^\[==========\] Running / { is_googletest = 1 }
/: Skipped$/ { reading_reason = 1; reason = ""; next }
reading_reason && /^(\[|$)/ { reading_reason = 0 }
reading_reason { reason = reason (reason == "" ? "" : " ") $0 }
/\[       OK \] .*\([0-9]+ ms\)$/ {
    ++count["passed"]
    sub(/^.*\[       OK \] /, "")
    took = $0
    sub(/^.*\(/, "", took)
    sub(/,? *(where|\().*$/, "")
    times[++timed] = sprintf("%9.2f s  %s  %s", milliseconds(took) / 1000, entry, $1)
}
/^\[  FAILED  \] .*\([0-9]+ ms\)$/ { ++count["failed"]; failed_here = 1 }
/^\[  SKIPPED \] .*\([0-9]+ ms\)$/ {
    ++count["skipped"]
    skipped[count["skipped"]] = entry ": " $4 ": " (reason == "" ? "no reason given" : reason)
    reason = ""
}
/^Test (Passed\.|Pass Reason:)$/ { passed = 1 }

END {
    end_of_entry()
    if (slowest > 0 && timed > 0) {
        print "The slowest tests:"
        close("sort -rn | head -n " slowest)
        for (i = 1; i <= timed; ++i) print times[i] | ("sort -rn | head -n " slowest)
        close("sort -rn | head -n " slowest)
    }
    if (count["skipped"] > 0) {
        print "Skipped on this machine:"
        for (i = 1; i <= count["skipped"]; ++i) print "  " skipped[i]
    }
    printf "%s: %d passed, %d failed, %d skipped\n", of, count["passed"], count["failed"], count["skipped"]
}
