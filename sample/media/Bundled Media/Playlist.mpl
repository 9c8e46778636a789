#EXTM3U
Welcome Tone.wav
