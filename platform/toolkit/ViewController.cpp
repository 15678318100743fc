#include "ViewController.h"
