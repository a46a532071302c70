// Filled in below.
