// The target that owns the precompiled header of the tests needs one source; it has no code.
