#pragma once

#import <UIKit/UIKit.h>

@interface LFTRecordableView : UIView
@end
@interface LFTRecordableImageView : UIImageView
@end
