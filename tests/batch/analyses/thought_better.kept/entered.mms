     2 < Number of models ranked; C-hat entered since: 1.500
 Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            Algorithm file                           Covariance file  Notes>
     1  3.4742E+02     2  6.9885E+02   undefined   undefined                                   fit.alg                  No covariance file found  
     2  3.4742E+02     2  6.9885E+02   undefined   undefined                                   fit.alg                  No covariance file found  
