// Nothing but the precompiled headers of the tests is compiled with this.
