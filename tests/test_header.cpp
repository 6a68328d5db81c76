// Only carries the precompiled header that all test programs share.
