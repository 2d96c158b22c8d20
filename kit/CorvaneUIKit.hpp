// CorvaneUIKit: the user-interface toolkit of the payroll application.
// Include this one header to use the whole kit.
#pragma once
