// Empty on purpose: its target precompiles the headers that all layers with the toolkit share.
