// Carries the precompiled header of the tests.
