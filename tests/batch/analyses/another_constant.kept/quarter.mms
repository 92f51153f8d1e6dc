     2 < Number of models ranked
 Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            Algorithm file                           Covariance file  Notes>
     1  1.7617E+02     2  3.5635E+02  0.0000E+00     0.59454                        juveniles_only.alg                        juveniles_only.cov  
     2  1.7656E+02     2  3.5712E+02  7.6554E-01     0.40546        juveniles_only.alg (changed since)                        juveniles_only.cov  
