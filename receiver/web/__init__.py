"""The TV in a browser: `html` draws a picture, `server` shows it to pages and takes their keys, `camera` photographs."""
