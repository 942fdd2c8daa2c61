# What make_stubs.py writes from the table of modes.
from enum import Enum

class Mode(Enum):
    CC_HIGH = "CCH"
    CC_LOW = "CCL"
    CV = "CV"
    CR_HIGH = "CRH"
    CR_LOW = "CRL"
    CC_DYNAMIC_HIGH = "CCDH"
    CC_DYNAMIC_LOW = "CCDL"
    CR_DYNAMIC_HIGH = "CRDH"
    CR_DYNAMIC_LOW = "CRDL"
