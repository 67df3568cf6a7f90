// Compiled for the sake of the headers that are precompiled with it.
