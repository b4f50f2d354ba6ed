In
In Secondo
hs 1.5
