In Cantiere Però
In CHIODO
St P1
Pt P2
In SPIGOLO
In MURO
Pt P3
In PALO
Pt P4
Ip LAMPIONE
Info fine
Pt P5
