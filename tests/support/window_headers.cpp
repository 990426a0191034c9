// The target of this file owns the precompiled headers of all tests with widgets.
