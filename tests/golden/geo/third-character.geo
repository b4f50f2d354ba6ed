St P1
Pt P2
Az 123.5
Zn:99.25
Dt1 25.5
hp:1.5
Pt P3
Az	45.5
Znx=98.5
Dt
