#pragma once

namespace korvanet::platform::core {

/// A walk over a sequence in both directions. `T` is a pointer type.
///
///     for (auto item = walk->First(); walk->IsValid(); walk->Next(), item = walk->Current()) ...
///
/// The walk holds positions, not contents: while it is in use, nothing may be added to the sequence
/// or removed from it. It goes back to whoever made it, by the operation named there.
template <class T>
class IEnumeration {
public:
    virtual ~IEnumeration() = default;

    /// Moves to the first (last) element and returns it, or null when there is none.
    virtual T First() = 0;
    virtual T Last() = 0;

    /// The element at the position, or null when the position is not valid.
    virtual T Current() = 0;

    /// Moves one element forward (backward). False when there is none; the position is then not
    /// valid.
    virtual bool Next() = 0;
    virtual bool Previous() = 0;

    /// True while the position is on an element.
    virtual bool IsValid() = 0;
};

}  // namespace korvanet::platform::core
