// Runs first.
