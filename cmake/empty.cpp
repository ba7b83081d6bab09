// SPDX-License-Identifier: MIT
// Placeholder so that a component without sources still forms a library.
