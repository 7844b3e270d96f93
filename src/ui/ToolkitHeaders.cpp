// Holds nothing: its target reads the headers that all layers of the toolkit share.
