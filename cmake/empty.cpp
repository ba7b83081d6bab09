// Placeholder so that a component without sources still forms a library.
