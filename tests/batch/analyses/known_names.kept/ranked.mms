     3 < Number of models ranked
 Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            Algorithm file                           Covariance file  Notes>
     1  3.4742E+02     1  6.9685E+02  0.0000E+00     0.73012                   fit.alg (changed since)                  No covariance file found  
     2  3.4742E+02     2  6.9885E+02  2.0035E+00     0.26813                                   fit.alg                  No covariance file found  
     3  3.5245E+02     2  7.0891E+02  1.2059E+01     0.00176                   fit.alg (changed since)                  No covariance file found  
