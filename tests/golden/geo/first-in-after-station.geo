St P1
In Tardi
Pt P2
In Dopo
