// Placeholder: being written.
