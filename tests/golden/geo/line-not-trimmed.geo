In Lotto 9
 St P1
St P2
 hs 1.5
ST P3
Pt P4
zn 95
Do 7
Zn  98  
