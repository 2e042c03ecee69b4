"""The project's tests. docs/testing.md says what runs where."""
