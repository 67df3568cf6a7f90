#ifndef FOUNDATION_UNDO_H
#define FOUNDATION_UNDO_H

// What happens when something is called that may throw. An exception is never stored: a thread
// that is cancelled unwinds through here as well. All work left is done inside the handler.

/// Runs `attempt` and returns its result; runs `undo` when that is a failure or it throws.
template <class Attempt, class Undo> auto orUndo(Attempt attempt, Undo undo) -> decltype(attempt())
{
    auto rc = [&] {
        try {
            return attempt();
        } catch (...) {
            undo();
            throw;
        }
    }();
    if (rc.code() != 0)
        undo();
    return rc;
}

/// Runs a walk that knows how far it is. When it throws it is run once more, to its end, before
/// the exception goes on.
template <class Walk> void throughout(Walk walk)
{
    try {
        walk();
    } catch (...) {
        walk();
        throw;
    }
}

/// Runs `last` after `first`, also when that throws.
template <class First, class Last> void inTurn(First first, Last last)
{
    try {
        first();
    } catch (...) {
        last();
        throw;
    }
    last();
}

#endif
